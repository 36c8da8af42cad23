// SPDX-License-Identifier: GPL-3.0-or-later
// How the rendering looks while it is edited. No rule of this sheet ever reaches the page's markup.

'use strict';

(function () {
    const sheet = new CSSStyleSheet();
    // Cells without a border would not be seen in an empty table, nor a picture below an opaque selection.
    sheet.replaceSync(`:where(td, th) { outline: 1px dotted rgba(128, 128, 128, 0.5); }
        :where(img, video, canvas, svg)::selection { background: rgba(48, 140, 198, 0.3); }
        template[luma-code] { display: inline-block !important; box-sizing: border-box; max-width: 100%;
            overflow: hidden; margin: 0 1px; padding: 0 4px; border: 1px solid #d3ac45; border-radius: 3px;
            background: #fff1c4; color: #594300; font: 11px/15px monospace; letter-spacing: 0; text-align: left;
            text-indent: 0; text-overflow: ellipsis; text-transform: none; vertical-align: text-bottom;
            white-space: nowrap; cursor: default; user-select: all; -webkit-user-modify: read-only; }
        template[luma-code]::before { content: attr(luma-mark); }
        :root > template[luma-code] { display: none !important; }`);
    document.adoptedStyleSheets = [...document.adoptedStyleSheets, sheet];
})();
