// SPDX-License-Identifier: GPL-3.0-or-later
// The names defined by the page's style sheets as the engine has parsed them: linked sheets and style blocks,
// nested rules (@media, @layer, @supports, nesting) and imported sheets. Always returns an array.

'use strict';

function findAllDotClassNamesFromCSS() {
    return namesInSelectors('.');
}

function findAllIDNamesFromCSS() {
    return namesInSelectors('#');
}

function namesInSelectors(mark) {
    const names = new Set();
    for (const selector of selectorsOfPage())
        for (const name of namesInSelector(selector, mark))
            names.add(name);
    return Array.from(names).sort();
}

function* selectorsOfPage() {
    for (const sheet of [...document.styleSheets, ...(document.adoptedStyleSheets || [])])
        yield* selectorsOfRules(rulesOf(sheet), new Set([sheet]));
}

// Sheets of another origin can't be read (CSSOM, cssRules).
function rulesOf(sheet) {
    try {
        return sheet.cssRules || [];
    } catch {
        return [];
    }
}

function* selectorsOfRules(rules, seen) {
    for (const rule of rules) {
        if (rule.selectorText)
            yield rule.selectorText;
        if (rule.cssRules)
            yield* selectorsOfRules(rule.cssRules, seen);
        if (rule.styleSheet && !seen.has(rule.styleSheet)) {
            seen.add(rule.styleSheet);
            yield* selectorsOfRules(rulesOf(rule.styleSheet), seen);
        }
    }
}

// The rules with declarations, each with its sheet.
function* styleRulesOfPage() {
    const sheets = new Set(document.styleSheets);
    for (const sheet of sheets) {
        const rules = [...rulesOf(sheet)];
        for (const rule of rules) {
            if (rule.style)
                yield [rule, sheet];
            rules.push(...(rule.cssRules || []));
            if (rule.styleSheet)
                sheets.add(rule.styleSheet);
        }
    }
}

// Names follow their mark outside strings and attribute brackets; escapes in them are resolved (CSS Syntax,
// 4.3.7). The engine serialises selectors itself, so there are no comments in them.
function namesInSelector(selector, mark) {
    const names = [];
    const token = /"(?:\\[^]|[^"\\])*"|'(?:\\[^]|[^'\\])*'|\[(?:"(?:\\[^]|[^"\\])*"|[^\]"])*\]|([.#])((?:\\[0-9a-f]{1,6}\s?|\\[^]|[-\w]|[^\0-\x7f])+)|\\[^]|[^]/gi;
    for (const [, found, name] of selector.matchAll(token))
        if (found === mark)
            names.push(withoutEscapes(name));
    return names;
}

function withoutEscapes(name) {
    return name.replace(/\\(?:([0-9a-f]{1,6})\s?|([^]))/gi, (all, code, character) =>
        code ? String.fromCodePoint(parseInt(code, 16) > 0x10ffff ? 0xfffd : parseInt(code, 16)) : character);
}
