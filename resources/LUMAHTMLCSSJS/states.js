// SPDX-License-Identifier: GPL-3.0-or-later
// Shows an element as if the mouse were over it, or as it is in another state: the selectors of the sheets are exchanged in
// what the engine has parsed, so neither the page nor a file changes.

'use strict';

const states = { places: new Map(), exchanged: new Map() };
const statesOfAncestors = /^(hover|active|focus-within)$/;
const furthestAncestor = 50;

// The names are those of pseudo-classes, such as "hover"; without one, or without an element, all is as it was.
function forceStates(path, names) {
    const element = path && names.length > 0 ? elementAtPath(path) : null;
    const around = [];
    for (let each = element; each && around.length < furthestAncestor; each = each.parentElement)
        around.push(placeOf(each));
    states.places.clear();
    for (const name of element ? names.flatMap(statesWith) : [])
        states.places.set(name, statesOfAncestors.test(name) ? around.join() : around[0]);
    applyStates();
}

const statesWith = (name) => name === 'focus' ? ['focus', 'focus-visible', 'focus-within'] : [name];

// A selector of this element alone.
function placeOf(element) {
    const steps = [];
    for (let each = element; each.parentElement; each = each.parentElement)
        steps.unshift(`>:nth-child(${Array.prototype.indexOf.call(each.parentElement.children, each) + 1})`);
    return ':root' + steps.join('');
}

function applyStates() {
    if (states.places.size === 0 && states.exchanged.size === 0)
        return;
    for (const [rule] of styleRulesOfPage()) {
        const known = states.exchanged.get(rule);
        const written = writtenSelector(rule);
        const shown = written && written.includes(':') ? shownSelector(written) : written;
        if (shown === (known ? known.shown : written))
            continue;
        rule.selectorText = shown;
        states.exchanged.set(rule, { written, shown });
    }
    if (states.places.size === 0)
        states.exchanged.clear();
}

const writtenSelector = (rule) => states.exchanged.has(rule) ? states.exchanged.get(rule).written : rule.selectorText;

// As specific as what is written. A link that counts as visited is none that isn't.
function shownSelector(selector) {
    const token = /"(?:\\[^]|[^"\\])*"|\[(?:"(?:\\[^]|[^"\\])*"|[^\]"])*\]|\\[^]|(?<!:):([-a-z]+)(?![-\w(])/gi;
    return selector.replace(token, (all, name) => {
        const place = states.places.get((name || '').toLowerCase());
        if (all === ':link' && states.places.has('visited'))
            return `:link:not(:where(${states.places.get('visited')}))`;
        if (!place)
            return all;
        // The engine takes only colours from rules for visited links.
        return name === 'visited' ? `:where(${place}):nth-child(n)` : `:is(${all},:where(${place}))`;
    });
}

// Sheets that are loaded, or loaded again, later on.
document.addEventListener('load', (event) => {
    if (states.places.size > 0 && event.target instanceof Element && event.target.matches('link, style'))
        applyStates();
}, true);
