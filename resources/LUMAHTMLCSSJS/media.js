// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the page as with a dark preference or as printed: the media queries of the sheets are exchanged in what the
// engine has parsed, so neither the page nor a file changes. Only style sheets follow; `picture` does not.

'use strict';

const media = { isDark: false, isPrint: false, written: new Map() };

function showMedia(isDark, isPrint) {
    media.isDark = isDark;
    media.isPrint = isPrint;
    applyMedia();
}

function applyMedia() {
    const seen = new Set();
    for (const sheet of document.styleSheets) {
        exchangeMedia(sheet.media);
        applyMediaIn(sheet, seen);
    }
}

// An imported sheet has the media of the rule that imports it.
function applyMediaIn(sheet, seen) {
    if (seen.has(sheet))
        return;
    seen.add(sheet);
    const rules = Array.from(rulesOf(sheet));
    for (let rule; (rule = rules.pop());) {
        if (rule.media)
            exchangeMedia(rule.media);
        if (rule.styleSheet)
            applyMediaIn(rule.styleSheet, seen);
        rules.push(...rule.cssRules || []);
    }
}

function exchangeMedia(list) {
    const text = media.written.has(list) ? media.written.get(list) : list.mediaText;
    const shown = shownMedia(text);
    if (shown === list.mediaText)
        return;
    media.written.set(list, text);
    list.mediaText = shown;
}

// What the engine has to read so that it does what it would do with the preferences: it has a light screen.
function shownMedia(text) {
    let shown = text;
    if (media.isPrint)
        shown = shown.replace(/(^|,|\bnot\b|\bonly\b)(\s*)(screen|print)\b/gi,
            (all, before, blank, type) => before + blank + (/print/i.test(type) ? 'screen' : 'print'));
    if (media.isDark)
        shown = shown.replace(/\(\s*prefers-color-scheme\s*:\s*(dark|light)\s*\)/gi,
            (all, scheme) => /dark/i.test(scheme) ? '(min-width: 0px)' : '(max-width: 0px)');
    return shown;
}

// Sheets that are loaded, or loaded again, later on.
document.addEventListener('load', (event) => {
    if ((media.isDark || media.isPrint) && event.target instanceof Element && event.target.matches('link, style'))
        applyMedia();
}, true);
