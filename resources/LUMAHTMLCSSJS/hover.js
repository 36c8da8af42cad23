// SPDX-License-Identifier: GPL-3.0-or-later
// What the editor needs to mark an element under the mouse, here or in the outline ("hover").

'use strict';

const hover = { told: null }; // the element last told

// Where the element at the path is shown, in pixels of the window, with the widths of its margins, borders and paddings:
// left, top, right, bottom. Nothing if it isn't shown.
function boxesOf(path) {
    const element = elementAtPath(path);
    const box = element && element.getBoundingClientRect();
    if (!box || element.getClientRects().length === 0)
        return null;
    const style = getComputedStyle(element);
    const widths = (before, after) => ['Left', 'Top', 'Right', 'Bottom'].map((side) => parseFloat(style[before + side + after]) || 0);
    const { offsetLeft, offsetTop, scale } = visualViewport;
    const size = [box.width, box.height].map((length) => Math.round(length * 100) / 100).join(' \u00d7 ');
    return {
        place: [box.left - offsetLeft, box.top - offsetTop, box.width, box.height],
        scale,
        margins: widths('margin', ''),
        borders: widths('border', 'Width'),
        paddings: widths('padding', ''),
        label: `${nameOfElement(element)}  ${size}`,
    };
}

// The element under the mouse while Control is held.
function tellHover(element) {
    const hovered = element && document.documentElement.contains(element) ? element : null;
    if (hovered === hover.told)
        return;
    hover.told = hovered;
    post('hover', hovered && pathOfElement(hovered));
}

document.addEventListener('mousemove', ({ target, ctrlKey, buttons }) =>
    tellHover(ctrlKey && buttons === 0 && target instanceof Element ? target : null), { capture: true, passive: true });
document.addEventListener('mouseleave', () => tellHover(null));
document.addEventListener('keyup', ({ key }) => key === 'Control' && tellHover(null), true);
document.addEventListener('scroll', () => tellHover(null), { capture: true, passive: true });
