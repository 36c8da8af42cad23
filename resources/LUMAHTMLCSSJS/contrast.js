// SPDX-License-Identifier: GPL-3.0-or-later
// Finds text with too little contrast to its background (WCAG 2.1, 1.4.3, AA). What can't be told from the computed
// styles, such as text on an image, is left out.

'use strict';

const contrast = { walker: null, backgrounds: new Map() };
const contrastSlice = 10; // milliseconds
const normalContrast = 4.5;
const largeContrast = 3;

// Looks at the page for a while, from its start or where the last call stopped. Whether that was all of it, and for
// each text found the path of its element, its contrast, the one needed, and the element's name.
function lowContrasts(fromStart) {
    const found = [];
    if (!document.body)
        return [true, found];
    if (fromStart || !contrast.walker) {
        contrast.walker = document.createTreeWalker(document.body, NodeFilter.SHOW_ELEMENT);
        contrast.backgrounds.clear();
    }
    const end = Date.now() + contrastSlice;
    let element = fromStart ? document.body : contrast.walker.nextNode();
    for (; element; element = contrast.walker.nextNode()) {
        const low = lowContrastOf(element);
        const path = low && pathOfElement(element);
        if (path)
            found.push([path, ...low, element.localName]);
        if (Date.now() > end)
            return [false, found];
    }
    contrast.walker = null;
    contrast.backgrounds.clear();
    return [true, found];
}

function lowContrastOf(element) {
    if (!Array.from(element.childNodes).some((node) => node instanceof Text && !isBlank(node))
        || element.closest(serverCode) || element.closest(':disabled, [aria-disabled=true]'))
        return null;
    const style = getComputedStyle(element);
    if (style.visibility !== 'visible' || style.textShadow !== 'none' || !isLarger(element, 1))
        return null;
    const text = colourOf(style.webkitTextFillColor);
    const background = text && backgroundOf(element);
    if (!background)
        return null;
    const ratio = contrastOf(over(text, background), background);
    const size = parseFloat(style.fontSize);
    const isLarge = size >= 24 || size >= 56 / 3 && parseInt(style.fontWeight, 10) >= 700;
    const needed = isLarge ? largeContrast : normalContrast;
    return ratio < needed ? [ratio, needed] : null;
}

// Texts for screen readers alone are cut to a point.
function isLarger(element, size) {
    return Array.from(element.getClientRects()).some(({ width, height }) => width > size && height > size);
}

// The opaque colour behind an element's text; null if it can't be told.
function backgroundOf(element) {
    const way = [];
    let colour;
    for (let each = element; colour === undefined; each = each && each.parentElement) {
        if (!each) {
            colour = canvasColour();
        } else if (contrast.backgrounds.has(each)) {
            colour = contrast.backgrounds.get(each);
        } else {
            const own = ownBackground(each);
            way.push([each, own]);
            if (!own || own.alpha === 1)
                colour = own;
        }
    }
    for (const [each, own] of way.reverse()) {
        colour = own && colour && over(own, colour);
        contrast.backgrounds.set(each, colour);
    }
    return colour;
}

// The colour that an element adds to what is behind it; null if it adds more than that, or if something else than its
// parent may be behind it.
function ownBackground(element) {
    const style = getComputedStyle(element);
    const colour = colourOf(style.backgroundColor);
    if (!colour || style.backgroundImage !== 'none' || style.opacity !== '1' || style.filter !== 'none'
        || style.mixBlendMode !== 'normal' || style.webkitBackgroundClip === 'text'
        || ['::before', '::after'].some((part) => coversElement(getComputedStyle(element, part))))
        return null;
    const isInPlace = style.position === 'static' || style.position === 'relative' && style.transform === 'none';
    return colour.alpha === 1 || isInPlace ? colour : null;
}

const coversElement = ({ content, position }) =>
    content !== 'none' && content !== 'normal' && /absolute|fixed/.test(position);

function canvasColour() {
    return getComputedStyle(document.documentElement).colorScheme.includes('dark')
        ? null : { red: 255, green: 255, blue: 255, alpha: 1 };
}

function colourOf(text) {
    const numbers = /^rgba?\(([\d.]+), ([\d.]+), ([\d.]+)(?:, ([\d.]+))?\)$/.exec(text);
    if (!numbers)
        return null;
    const [red, green, blue, alpha] = numbers.slice(1).map(Number);
    return { red, green, blue, alpha: numbers[4] === undefined ? 1 : alpha };
}

function over(upper, lower) {
    const mixed = (a, b) => a * upper.alpha + b * (1 - upper.alpha);
    return { red: mixed(upper.red, lower.red), green: mixed(upper.green, lower.green),
        blue: mixed(upper.blue, lower.blue), alpha: 1 };
}

function contrastOf(a, b) {
    const lights = [luminance(a), luminance(b)];
    return (Math.max(...lights) + 0.05) / (Math.min(...lights) + 0.05);
}

// WCAG 2.1, "relative luminance".
function luminance({ red, green, blue }) {
    const linear = (value) => value / 255 <= 0.03928 ? value / 255 / 12.92 : ((value / 255 + 0.055) / 1.055) ** 2.4;
    return 0.2126 * linear(red) + 0.7152 * linear(green) + 0.0722 * linear(blue);
}
