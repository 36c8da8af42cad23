// SPDX-License-Identifier: GPL-3.0-or-later
// Shows server code, which the editor hands over as templates, as small marks with its first words. A mark is selected
// and deleted as one thing, and nothing can be typed into it.

'use strict';

const serverCode = 'template[luma-code]';

(function () {
    const sheet = new CSSStyleSheet();
    sheet.replaceSync(`${serverCode} { display: inline-block !important; box-sizing: border-box; max-width: 100%;
        overflow: hidden; margin: 0 1px; padding: 0 4px; border: 1px solid #d3ac45; border-radius: 3px;
        background: #fff1c4; color: #594300; font: 11px/15px monospace; letter-spacing: 0; text-align: left;
        text-indent: 0; text-overflow: ellipsis; text-transform: none; vertical-align: text-bottom;
        white-space: nowrap; cursor: default; user-select: all; -webkit-user-modify: read-only; }
        ${serverCode}::before { content: attr(luma-mark); }
        :root > ${serverCode} { display: none !important; }`);
    document.adoptedStyleSheets = [...document.adoptedStyleSheets, sheet];
})();

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
