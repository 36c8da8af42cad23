// SPDX-License-Identifier: GPL-3.0-or-later
// The box of an element in numbers: margin, border, padding and content, and the declarations that set them.

'use strict';

const boxProperties = ['top', 'right', 'bottom', 'left']
    .flatMap((side) => [`margin-${side}`, `border-${side}-width`, `padding-${side}`]).concat('width', 'height');

// The values that the element at the path has in the end, by property, and the size of its content. The rules are those of
// the element as judgedDeclarations() takes them; `sources` has for each property that one of them sets the rule's place, the
// declaration's place in it, and the value that it gives. Nothing if there is no such element.
function boxModel(path, rules) {
    const element = elementAtPath(path);
    if (!element)
        return null;
    const style = getComputedStyle(element);
    const values = Object.fromEntries(boxProperties.map((name) => [name, style.getPropertyValue(name)]));
    const sources = {};
    for (const [rule, at, names] of byImportance(rules)) {
        const [name, value] = rules[rule].declarations[at];
        for (const each of names) {
            const property = physicalName(each, style);
            if (property in values && !(property in sources))
                sources[property] = [rule, at, longValue(name, value, each)];
        }
    }
    return { values, sources, isShown: element.getClientRects().length > 0, content: contentSize(style),
        isWhole: style.boxSizing === 'border-box' };
}

// Width and height as the style has them, without padding and border; "auto" for what takes its size from its text.
function contentSize(style) {
    const around = { width: ['left', 'right'], height: ['top', 'bottom'] };
    return Object.entries(around).map(([name, sides]) => {
        const size = parseFloat(style[name]);
        if (style.boxSizing !== 'border-box' || Number.isNaN(size))
            return style[name];
        const taken = sides.map((side) => parseFloat(style[`padding-${side}`]) + parseFloat(style[`border-${side}-width`]));
        return `${Math.max(0, size - taken[0] - taken[1])}px`;
    });
}

// "margin-left" for "margin-inline-start" where lines go from left to right (CSS Logical Properties 1).
function physicalName(name, { direction, writingMode }) {
    const isUpright = writingMode === 'horizontal-tb';
    const size = { 'inline-size': isUpright ? 'width' : 'height', 'block-size': isUpright ? 'height' : 'width' }[name];
    const found = /^(margin|padding|border)-(inline|block)-(start|end)(-width)?$/.exec(name);
    if (!found)
        return size || name;
    const [, box, axis, edge, width = ''] = found;
    const lines = writingMode === 'vertical-rl' ? ['right', 'left'] : ['left', 'right'];
    const ends = axis === 'block' ? isUpright ? ['top', 'bottom'] : lines : isUpright ? ['left', 'right'] : ['top', 'bottom'];
    const isReversed = axis === 'inline' && direction === 'rtl';
    return `${box}-${ends[(edge === 'end') !== isReversed ? 1 : 0]}${width}`;
}

function longValue(name, value, long) {
    const { style } = document.createElement('i');
    style.setProperty(name, value);
    return style.getPropertyValue(long);
}
