// SPDX-License-Identifier: GPL-3.0-or-later
// Reports what is under the mouse ("mouseEvent_text"): the elements around the point, and the target of a link or
// the source of an image.

'use strict';

const mouse = { told: '' };

function nameOfElement(element) {
    const id = element.id ? '#' + element.id : '';
    const classes = Array.from(element.classList, (name) => '.' + name).join('');
    return element.localName + id + classes;
}

function textUnderMouse(element) {
    const names = [];
    for (let each = element; each && each !== document.documentElement; each = each.parentElement)
        names.unshift(nameOfElement(each));
    const link = element.closest('a[href], area[href]');
    const source = link ? link.getAttribute('href') : element.getAttribute('src');
    return names.join(' > ') + (source ? ' \u2192 ' + source.slice(0, 500) : '');
}

document.addEventListener('mouseover', (event) => {
    if (!(event.target instanceof Element))
        return;
    const text = textUnderMouse(event.target);
    if (text !== mouse.told)
        post('mouseEvent_text', mouse.told = text);
}, true);

document.addEventListener('mouseleave', () => post('mouseEvent_text', mouse.told = ''));

// Clicks change nothing in the page: a form control is not set, details do not open, and an image is selected. A click
// with Control opens details for as long as they are edited, or closes them.

const clickedObjects = 'img, video, audio, hr, svg, canvas';

function selectNode(node) {
    const range = document.createRange();
    range.selectNode(node);
    getSelection().removeAllRanges();
    getSelection().addRange(range);
}

document.addEventListener('mousedown', (event) => {
    if (event.target instanceof Element && event.target.closest('select, video, audio'))
        event.preventDefault();
}, true);

document.addEventListener('click', (event) => {
    const target = event.target instanceof Element ? event.target : document.body;
    const summary = target.closest('summary');
    if (summary || target.closest('input, select, option, label, video, audio'))
        event.preventDefault();
    if (summary && event.ctrlKey)
        toggleDetails(summary.closest('details'));
    const shown = event.button === 0 && target.closest(clickedObjects);
    if (shown && document.body.contains(shown))
        selectNode(shown);
}, true);
