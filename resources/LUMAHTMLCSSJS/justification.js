// SPDX-License-Identifier: GPL-3.0-or-later
// Justification: the text alignment of the selected blocks, as an inline style.

'use strict';

const justifications = {
    'left': 'Justify Left',
    'center': 'Justify Center',
    'right': 'Justify Right',
    'justify': 'Justify Full',
};

function justify(alignment) {
    for (const block of blocksToJustify()) {
        clearJustification(block);
        if (alignmentOf(block) !== alignment)
            block.style.textAlign = alignment;
    }
}

function removeJustfication() {
    blocksToJustify().forEach(clearJustification);
}

// The title of the selection's alignment, as a list.
function getCurrentJustification() {
    const range = currentRange();
    const title = range && justifications[alignmentOf(blockOf(range.startContainer))];
    return title ? [title] : [];
}

function blocksToJustify() {
    if (!currentRange())
        return [];
    return blocksOrWrapped();
}

function clearJustification(block) {
    block.style.removeProperty('text-align');
    block.removeAttribute('align');
    if (block.getAttribute('style') === '')
        block.removeAttribute('style');
}

function alignmentOf(block) {
    const { textAlign, direction } = getComputedStyle(block);
    const alignment = textAlign.replace('-webkit-', '');
    const start = direction === 'rtl' ? 'right' : 'left';
    if (alignment === 'start' || alignment === 'auto')
        return start;
    return alignment === 'end' ? (start === 'left' ? 'right' : 'left') : alignment;
}
