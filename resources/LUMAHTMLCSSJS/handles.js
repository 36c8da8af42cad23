// SPDX-License-Identifier: GPL-3.0-or-later
// What the editor needs for the handles with which the size of an image is dragged: it tells when they must follow
// ("boxMoved").

'use strict';

const handled = { element: null };
const tellBoxMoved = () => handled.element && post('boxMoved', null);
const handledObserver = new ResizeObserver(tellBoxMoved);
document.addEventListener('scroll', tellBoxMoved, { capture: true, passive: true });
document.addEventListener('load', tellBoxMoved, { capture: true, passive: true });

// Follows the element at the path, or none.
function handleElement(path) {
    handledObserver.disconnect();
    handled.element = path && elementAtPath(path);
    if (!handled.element)
        return null;
    handledObserver.observe(handled.element);
    handledObserver.observe(document.documentElement);
    return handledBox();
}

// Where it is shown, in pixels of the window. Nothing if it isn't shown.
function handledBox() {
    const { element } = handled;
    if (!element || !element.isConnected || element.getClientRects().length === 0)
        return null;
    const box = element.getBoundingClientRect();
    const { offsetLeft, offsetTop, scale } = visualViewport;
    return { place: [box.left - offsetLeft, box.top - offsetTop, box.width, box.height], scale };
}

// Its width and height as style sheets count them, those that it has by itself, what decides about each of them
// ("attribute", "style", "sheet", or "auto" for a sheet that leaves it to the ratio), and the rule if it is a sheet.
function handledSize() {
    const { element } = handled;
    const box = handledBox();
    if (!box)
        return null;
    const style = getComputedStyle(element);
    const rules = rulesByPart(element, bundled(activeRules().rules)).get('').sort(byWeight);
    const deciders = ['width', 'height'].map((side) => deciderOf(element, side, rules));
    return {
        ...box,
        size: [parseFloat(style.width), parseFloat(style.height)],
        drawn: [element.offsetWidth, element.offsetHeight],
        natural: [element.naturalWidth || element.videoWidth || 0, element.naturalHeight || element.videoHeight || 0],
        by: deciders.map(({ by }) => by),
        rule: (deciders.find(({ by }) => by === 'sheet') || { rule: '' }).rule,
    };
}

function deciderOf(element, side, rules) {
    const important = (style) => style.getPropertyPriority(side) === 'important';
    const deciding = rules.filter(({ rule }) => rule.style.getPropertyValue(side));
    const first = deciding.find(({ rule }) => important(rule.style)) || deciding[0];
    if (element.style.getPropertyValue(side) && !(first && important(first.rule.style) && !important(element.style)))
        return { by: 'style' };
    if (!first)
        return { by: 'attribute' };
    return { by: first.rule.style.getPropertyValue(side) === 'auto' ? 'auto' : 'sheet', rule: writtenSelector(first.rule) };
}
