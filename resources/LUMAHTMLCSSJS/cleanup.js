// SPDX-License-Identifier: GPL-3.0-or-later
// What the engine leaves behind when it edits: spans and fonts that carry the look of where text came from. Those
// that the page had stay, those that came up while editing go.

const knownStyles = new WeakSet();
const styleCarriers = 'span[style], font';

function knowStyles(element) {
    for (const carrier of element.querySelectorAll(styleCarriers))
        knownStyles.add(carrier);
    if (element.matches(styleCarriers))
        knownStyles.add(element);
}

knowStyles(document.documentElement);

function cleanUp() {
    const range = currentRange();
    const around = range ? blockOf(range.commonAncestorContainer) : document.body;
    for (const carrier of (around.parentElement || around).querySelectorAll(styleCarriers)) {
        if (knownStyles.has(carrier))
            continue;
        carrier.removeAttribute('style');
        if (carrier.localName === 'font' || carrier.attributes.length === 0)
            unwrap(carrier);
    }
}
