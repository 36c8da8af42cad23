// SPDX-License-Identifier: GPL-3.0-or-later
// The engine checks the spelling of a whole page in the same languages. So that a quotation in a language without a
// dictionary isn't checked in the language around it, it is left out: by the attribute `spellcheck`, written in a way that
// these scripts know as their own, and that never reaches the editor.

'use strict';

const ownSpellcheck = { off: 'fAlSe', on: 'tRuE' };

const isOwnSpellcheck = ({ name, value }) =>
    name === 'spellcheck' && (value === ownSpellcheck.off || value === ownSpellcheck.on);
const holdsOwnSpellcheck = (node) => node instanceof Element
    && (Array.from(node.attributes).some(isOwnSpellcheck) || node.querySelector('[spellcheck]') !== null);

function withoutOwnSpellcheck(copy) {
    for (const element of [copy, ...copy.querySelectorAll('[spellcheck]')])
        if (Array.from(element.attributes).some(isOwnSpellcheck))
            element.removeAttribute('spellcheck');
}

const languageOf = (element) => (element.getAttribute('lang') || element.getAttribute('xml:lang') || '').trim();

// Leaves out what is in these languages, as the page names them.
function leaveOutOfSpelling(languages) {
    postChanges(changes.observer.takeRecords());
    for (const element of document.querySelectorAll('[lang], [*|lang], [spellcheck]')) {
        const own = element.getAttributeNode('spellcheck');
        if (own && !isOwnSpellcheck(own))
            continue;
        const around = element.parentElement && element.parentElement.closest('[spellcheck]');
        const isInside = around && around.getAttribute('spellcheck') === ownSpellcheck.off;
        const language = languageOf(element);
        if (languages.includes(language))
            element.setAttribute('spellcheck', ownSpellcheck.off);
        else if (language !== '' && isInside)
            element.setAttribute('spellcheck', ownSpellcheck.on);
        else
            element.removeAttribute('spellcheck');
    }
    changes.observer.takeRecords();
}
