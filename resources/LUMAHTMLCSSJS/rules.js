// SPDX-License-Identifier: GPL-3.0-or-later
// The style rules that apply to an element, as the engine has parsed them, and what becomes of their declarations (CSS
// Cascade 5). The editor has the sheets' texts; it finds a rule there by its place among the ones that the engine kept.

'use strict';

const attributeRank = 1e9; // of a style attribute, in front of all layers
const inheritedProperties = new Set((
    'border-collapse border-spacing caption-side caret-color color color-scheme cursor ' +
    'direction dominant-baseline empty-cells fill fill-opacity fill-rule font-family font-feature-settings ' +
    'font-kerning font-optical-sizing font-palette font-size font-size-adjust font-stretch font-style ' +
    'font-synthesis font-synthesis-small-caps font-synthesis-style font-synthesis-weight font-variant-alternates ' +
    'font-variant-caps font-variant-east-asian font-variant-ligatures font-variant-numeric font-variant-position ' +
    'font-variation-settings font-weight hyphens image-orientation image-rendering letter-spacing line-break ' +
    'line-height list-style-image list-style-position list-style-type marker-end marker-mid marker-start orphans ' +
    'overflow-wrap paint-order pointer-events quotes ruby-position shape-rendering speak stroke stroke-dasharray ' +
    'stroke-dashoffset stroke-linecap stroke-linejoin stroke-miterlimit stroke-opacity stroke-width tab-size ' +
    'text-align text-align-last text-anchor text-combine-upright text-emphasis-color text-emphasis-position ' +
    'text-emphasis-style text-indent text-orientation text-rendering text-shadow text-size-adjust text-transform ' +
    'text-underline-offset text-underline-position visibility white-space widows word-break word-spacing ' +
    'writing-mode -webkit-text-fill-color -webkit-text-stroke-color -webkit-text-stroke-width')
    .split(' '));

// What applies to the element at a path, to its pseudo-elements and, above it, to what it inherits from: for each, from
// the most important rule down, where the rule stands. Empty if there is no such element.
function matchedRules(path) {
    const element = elementAtPath(path);
    if (!element)
        return { groups: [], sheets: [] };
    const { rules, sheets } = activeRules();
    stylePreview.rules = rules;
    const bundles = bundled(rules);
    const own = rulesByPart(element, bundles);
    const groups = Array.from(own, ([part, found]) => describedGroup(element, part, found));
    for (let each = element.parentElement; each; each = each.parentElement) {
        const found = rulesByPart(each, bundles).get('');
        groups.push(describedGroup(each, '', found.filter(({ rule }) => Array.from(rule.style).some(isInherited))));
    }
    return { groups, sheets };
}

const isInherited = (name) => name.startsWith('--') || inheritedProperties.has(name);

// Rules in bundles whose selectors are tried in one go: the engine reads a text of selectors once and keeps it, but not
// thousands of them.
function bundled(rules) {
    const bundles = [];
    for (let from = 0; from < rules.length; from += 64) {
        const some = rules.slice(from, from + 64);
        bundles.push({ rules: some, text: some.map(baseOf).join() });
    }
    return bundles;
}

// What selects the elements, pseudo-elements left out.
const baseOf = ({ rule: { selectorText } }) => selectorText.includes('::')
    ? selectorsIn(selectorText).map(({ base }) => base).join() : selectorText;

// The rules that match an element, for itself ('') and for its pseudo-elements, with their specificity.
function rulesByPart(element, bundles) {
    const parts = new Map([['', []]]);
    for (const bundle of bundles.filter(({ text }) => fits(element, text, true)))
        for (const each of bundle.rules.filter((one) => fits(element, baseOf(one))))
            addByPart(element, each, parts);
    return parts;
}

function addByPart(element, each, parts) {
    const matching = selectorsIn(each.rule.selectorText).filter(({ base }) => fits(element, base));
    for (const part of new Set(matching.map((selector) => selector.part))) {
        const weight = matching.filter((selector) => selector.part === part).map(({ text }) => weightOf(text))
            .reduce((a, b) => isHeavier(a, b) ? a : b);
        parts.set(part, [...parts.get(part) || [], { ...each, weight }]);
    }
}

// The most important one first.
const byWeight = (a, b) => b.layer - a.layer || compareWeights(b.weight, a.weight) || b.order - a.order;

function describedGroup(element, part, rules) {
    rules.sort(byWeight);
    return { path: pathOfElement(element), part, name: element.localName, rules: rules.map(describedRule),
        variables: variablesIn(element, part, rules) };
}

// The values of the custom properties that the rules or the style attribute set or use.
function variablesIn(element, part, rules) {
    const styles = [...rules.map(({ rule }) => rule.style), ...part || !element.style ? [] : [element.style]];
    const names = styles.flatMap((style) => [...Array.from(style).filter((name) => name.startsWith('--')),
        ...Array.from(style.cssText.matchAll(/var\(\s*(--[^\s,)]+)/g), ([, name]) => name)]);
    const computed = names.length > 0 ? getComputedStyle(element, part) : null;
    return Object.fromEntries(names.map((name) => [name, computed.getPropertyValue(name).trim()]));
}

const describedRule = ({ sheet, places, rule, conditions, layer, weight, order }) =>
    [sheet, places, writtenSelector(rule), conditions, layer, weight, writtenDeclarations(rule), order];

// For a rule whose text can't be read.
const writtenDeclarations = ({ style }) =>
    Array.from(style, (name) => [name, style.getPropertyValue(name), style.getPropertyPriority(name)]);

// Scripts can't ask for selectors with a namespace.
function fits(element, selector, ifUnknown = false) {
    try {
        return element.matches(selector);
    } catch {
        return ifUnknown;
    }
}

// The style rules whose conditions hold, in the order of the sheets.
function activeRules() {
    const walk = { rules: [], sheets: [], layers: layerNamed('') };
    for (const sheet of document.styleSheets)
        walkSheet(walk, sheet, [], walk.layers, new Set());
    numberLayers(walk.layers, 0);
    for (const each of walk.rules)
        each.layer = each.layer.rank;
    return walk;
}

function walkSheet(walk, sheet, conditions, layer, seen) {
    const node = sheet.ownerNode;
    const place = node && node.localName === 'style' ? pathOfElement(node) : sheet.href;
    if (sheet.disabled || !place || seen.has(sheet) || !holds(sheet.media))
        return;
    const index = walk.sheets.push(place) - 1;
    const inside = { walk, sheet: index, seen: new Set(seen).add(sheet) };
    walkRules(inside, rulesOf(sheet), [], [...conditions, ...mediaCondition(sheet.media)], layer);
}

function walkRules(inside, rules, places, conditions, layer) {
    Array.from(rules).forEach((rule, index) => {
        const here = [...places, [index, rules.length]];
        if (rule.selectorText && rule.style) {
            inside.walk.rules.push({ sheet: inside.sheet, places: here, rule, conditions, layer,
                order: inside.walk.rules.length });
        } else if (rule.nameList) {
            rule.nameList.forEach((name) => layerAt(layer, name));
        } else if (rule.styleSheet) {
            const name = rule.layerName;
            walkSheet(inside.walk, rule.styleSheet, conditions, typeof name === 'string' ? layerAt(layer, name) : layer,
                inside.seen);
        } else if (rule.cssRules && !rule.style && !isKeyframes(rule)) {
            const isLayer = !rule.media && !rule.conditionText && 'name' in rule;
            const condition = isLayer ? [`@layer ${rule.name}`.trim()] : conditionOf(rule);
            if (!rule.media || holds(rule.media))
                if (!isSupports(rule) || CSS.supports(rule.conditionText))
                    walkRules(inside, rule.cssRules, here, [...conditions, ...condition],
                        isLayer ? layerAt(layer, rule.name) : layer);
        }
    });
}

const isKeyframes = (rule) => rule.type === 7;
const isSupports = (rule) => rule.type === 12;
const holds = (list) => list.length === 0 || matchMedia(list.mediaText).matches;
const writtenMedia = (list) => media.written.has(list) ? media.written.get(list) : list.mediaText;
const mediaCondition = (list) =>
    list.length > 0 && writtenMedia(list) !== 'all' ? [`@media ${writtenMedia(list)}`] : [];

function conditionOf(rule) {
    if (rule.media)
        return mediaCondition(rule.media);
    return [rule.cssText.slice(0, rule.cssText.indexOf('{')).trim()];
}

// Layers in the order in which their names come up; what is in none, or in none of a layer's inner ones, is stronger.
function layerNamed(name) {
    return { name, inner: new Map(), rank: 0 };
}

function layerAt(layer, name) {
    let at = layer;
    for (const step of name ? name.split('.') : ['']) {
        const key = step || `unnamed ${at.inner.size}`;
        if (!at.inner.has(key))
            at.inner.set(key, layerNamed(key));
        at = at.inner.get(key);
    }
    return at;
}

function numberLayers(layer, first) {
    let next = first;
    for (const inner of layer.inner.values())
        next = numberLayers(inner, next);
    layer.rank = next;
    return next + 1;
}

// The selectors of a list, each with what it selects and the pseudo-element it is for.
function selectorsIn(list) {
    return partsOfList(list).map((text) => {
        const [, base, part] = /^([^]*?)(::[-\w]+(?:\([^)]*\))?)?$/.exec(text);
        return { text, base: part && /(^|[\s>+~])$/.test(base) ? base + '*' : base, part: part || '' };
    });
}

// The parts between commas outside brackets and strings.
function partsOfList(list) {
    const parts = [''];
    let depth = 0;
    for (const [token] of list.matchAll(/"(?:\\[^]|[^"\\])*"|'(?:\\[^]|[^'\\])*'|\\[^]|[^]/g)) {
        depth += token === '(' || token === '[' ? 1 : token === ')' || token === ']' ? -1 : 0;
        if (token === ',' && depth === 0)
            parts.push('');
        else
            parts[parts.length - 1] += token;
    }
    return parts.map((part) => part.trim());
}

// A selector's specificity (Selectors 4, 17): ids, classes and their like, types and pseudo-elements.
function weightOf(selector) {
    const weight = [0, 0, 0];
    let left = selector;
    for (let found; (found = /:([-\w]+)\(/.exec(left));) {
        const inner = insideBrackets(left, found.index + found[0].length);
        const name = found[1].toLowerCase();
        const isElement = left[found.index - 1] === ':';
        left = left.slice(0, found.index - (isElement ? 1 : 0))
            + left.slice(found.index + found[0].length + inner.length + 1);
        const lists = /^(is|not|has|matches|-webkit-any)$/.test(name) ? inner : (/ of ([^]*)$/.exec(inner) || [])[1];
        if (isElement || !/^(is|not|has|matches|where|-webkit-any)$/.test(name))
            ++weight[isElement ? 2 : 1];
        if (lists)
            partsOfList(lists)
                .map(weightOf)
                .reduce((a, b) => isHeavier(a, b) ? a : b)
                .forEach((count, i) => (weight[i] += count));
    }
    const token =
        /\[(?:"(?:\\[^]|[^"\\])*"|'(?:\\[^]|[^'\\])*'|[^\]"'])*\]|(::?|[.#])?((?:\\[0-9a-f]{1,6}\s?|\\[^]|[-\w]|[^\0-\x7f])+)/gi;
    for (const [text, mark] of left.matchAll(token)) {
        if (mark === '#')
            ++weight[0];
        else if (mark === '.' || mark === ':' || text.startsWith('['))
            ++weight[1];
        else
            ++weight[2];
    }
    return weight;
}

function insideBrackets(text, from) {
    let depth = 1;
    let at = from;
    for (; at < text.length; ++at) {
        if (text[at] === '\\')
            ++at;
        depth += text[at] === '(' ? 1 : text[at] === ')' ? -1 : 0;
        if (depth === 0)
            break;
    }
    return text.slice(from, at);
}

const compareWeights = (a, b) => a[0] - b[0] || a[1] - b[1] || a[2] - b[2];
const isHeavier = (a, b) => compareWeights(a, b) > 0;

// Which of these rules' texts the engine takes for a rule.
function keptRules(texts) {
    const sheet = new CSSStyleSheet();
    return texts.map((text) => {
        sheet.replaceSync(text);
        return sheet.cssRules.length > 0;
    });
}

// What becomes of declarations. The groups are those of matchedRules(): of each its scope (an element with what it
// inherits, or a pseudo-element), whether it is inherited, and its rules with their layers; of each rule its
// declarations as name, value and whether it is important. Answers a list like that, of "applies", "overridden",
// "invalid" and "not inherited".
function judgedDeclarations(groups) {
    const winners = new Map();
    return groups.map(({ scope, inherits, rules }) => {
        const own = new Set();
        const isTaken = (name) => own.has(name) || (winners.get(scope) || own).has(name);
        const judged = rules.map(({ declarations }) => declarations.map(() => 'invalid'));
        for (const [rule, at, names] of byImportance(rules)) {
            const counting = inherits ? names.filter(isInherited) : names;
            const applying = counting.filter((name) => !isTaken(name));
            applying.forEach((name) => own.add(name));
            judged[rule][at] = applying.length > 0 ? 'applies' : counting.length > 0 ? 'overridden' : 'not inherited';
        }
        winners.set(scope, new Set([...winners.get(scope) || [], ...own]));
        return judged;
    });
}

// The valid declarations, the strongest first: rule, place in it, and names in full.
function byImportance(rules) {
    const important = [];
    const normal = [];
    rules.forEach(({ layer, declarations }, rule) => {
        for (let at = declarations.length - 1; at >= 0; --at) {
            const [name, value, isImportant] = declarations[at];
            const names = longNames(name, value);
            if (names.length > 0)
                (isImportant ? important : normal).push([rule, at, names, layer]);
        }
    });
    // Among important declarations the first layer is the strongest.
    const rankOf = (layer) => layer === attributeRank ? -1 : layer;
    important.sort((a, b) => rankOf(a[3]) - rankOf(b[3]));
    return [...important, ...normal];
}

function longNames(name, value) {
    const { style } = document.createElement('i');
    style.setProperty(name, value);
    return Array.from(style);
}

// The values that an element has in the end, by name.
function computedStyles(path) {
    const element = elementAtPath(path);
    const style = element ? getComputedStyle(element) : [];
    return Array.from(style, (name) => [name, style.getPropertyValue(name)]);
}
