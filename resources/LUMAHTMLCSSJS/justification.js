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
            setDeclarations(block, [...declarationsOf(block), ` text-align: ${alignment}`]);
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
    block.removeAttribute('align');
    const declarations = declarationsOf(block);
    const others = declarations.filter((each) => !/^\s*text-align\s*:/i.test(each));
    if (others.length < declarations.length)
        setDeclarations(block, others);
}

// The declarations of a style attribute as they are written: the engine would write all of them anew, and drop those
// that it does not know.
function declarationsOf(block) {
    const text = block.getAttribute('style') || '';
    const declarations = text.match(/(?:"[^"]*"|'[^']*'|\([^)]*\)|\/\*[^]*?\*\/|[^;])+/g) || [];
    return declarations.filter((each) => each.trim() !== '');
}

function setDeclarations(block, declarations) {
    const text = declarations.join(';').trimStart();
    if (text === '')
        block.removeAttribute('style');
    else
        block.setAttribute('style', text + ';');
}

function alignmentOf(block) {
    const { textAlign, direction } = getComputedStyle(block);
    const alignment = textAlign.replace('-webkit-', '');
    const start = direction === 'rtl' ? 'right' : 'left';
    if (alignment === 'start' || alignment === 'auto')
        return start;
    return alignment === 'end' ? (start === 'left' ? 'right' : 'left') : alignment;
}
