// SPDX-License-Identifier: GPL-3.0-or-later
// Shows server code, which the editor hands over as templates, as small marks with its first words. A mark is selected
// and deleted as one thing, and nothing can be typed into it.

'use strict';

const serverCode = 'template[luma-code]';

document.addEventListener('mousedown', (event) => {
    const mark = event.target instanceof Element && event.button === 0 && event.target.closest(serverCode);
    if (!mark)
        return;
    event.preventDefault();
    const range = document.createRange();
    range.selectNode(mark);
    getSelection().removeAllRanges();
    getSelection().addRange(range);
}, true);
