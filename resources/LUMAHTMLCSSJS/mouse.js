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
