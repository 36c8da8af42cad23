// SPDX-License-Identifier: GPL-3.0-or-later
// The links of the page: the one at the selection, and what a click on one does.

'use strict';

function linkAtSelection() {
    const range = currentRange();
    if (!range)
        return null;
    const around = closestAt(range.commonAncestorContainer, 'a[href]');
    const leaf = around || range.collapsed ? null : leavesOf(range).find((node) => closestAt(node, 'a[href]'));
    return around || leaf && closestAt(leaf, 'a[href]');
}

// The address of the link at the selection, as written in the page; empty if there is none.
function getLink() {
    const link = linkAtSelection();
    return link ? link.getAttribute('href') : '';
}

// A click on a link sets the caret, as the engine follows no links in an editable page. A click with Control clicks a link
// outside the page instead, which the editor passes to the desktop's browser.
function activateLink(link) {
    const outside = document.createElement('a');
    outside.href = link.href;
    outside.click();
}

document.addEventListener('click', (event) => {
    const link = event.target instanceof Element && event.target.closest('a[href], area[href]');
    if (!link || event.button !== 0)
        return;
    event.preventDefault();
    if (event.isTrusted && event.ctrlKey)
        activateLink(link);
}, true);
