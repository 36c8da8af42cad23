// SPDX-License-Identifier: GPL-3.0-or-later
// Removes what the engine leaves behind when it edits: spans and fonts that carry over the look of moved text.
// Those that came with the page stay.

'use strict';

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
