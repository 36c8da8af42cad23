// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a declaration with another value while the user chooses one. Only what the engine has parsed changes, or an
// animation stands in front of a style attribute, so neither the page nor a file does.

'use strict';

const stylePreview = { rules: [], end: null }; // the rules are those of the last matchedRules()

// `number` is that of a rule, or negative for the style attribute of the element at the path.
function previewStyle(number, path, name, value) {
    endStylePreview();
    const [, text, important] = /^([^]*?)\s*(!\s*important)?$/i.exec(value);
    const known = stylePreview.rules[number];
    const element = number < 0 ? elementAtPath(path) : null;
    if (known) {
        const { style } = known.rule;
        const before = style.cssText;
        style.setProperty(name, text, important ? 'important' : '');
        stylePreview.end = () => (style.cssText = before);
    } else if (element) {
        const key = name.startsWith('--') ? name : name.replace(/-([a-z])/g, (all, letter) => letter.toUpperCase());
        const animation = element.animate({ [key]: [text, text] }, { fill: 'forwards' });
        stylePreview.end = () => animation.cancel();
    }
}

function endStylePreview() {
    if (stylePreview.end)
        stylePreview.end();
    stylePreview.end = null;
}
