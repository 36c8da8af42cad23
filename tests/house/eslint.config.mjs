// SPDX-License-Identifier: GPL-3.0-or-later
// ESLint's rules for the page-side scripts. These are plain scripts in one scope: a function, const or class declared at
// the top of one file is known in all others. So each file is checked with the names of the others as globals that must
// be neither declared again nor assigned. EditorPage decides in which order they run.
import { readdirSync, readFileSync } from 'node:fs';

const folder = 'resources/LUMAHTMLCSSJS';
const declaration = /^(?:async )?(?:function\*?|const|let|class) (\w+)/gm;
const files = readdirSync(folder).filter((name) => name.endsWith('.js'));
const declared = new Map(files.map((name) => {
    const source = readFileSync(`${folder}/${name}`, 'utf8');
    return [name, Array.from(source.matchAll(declaration), (found) => found[1])];
}));

// The names of the browser and of Qt's web channel that the scripts use.
const browser = `
    addEventListener CharacterData Comment CSS CSSStyleSheet document DocumentFragment DOMParser Element getComputedStyle getSelection HTMLBodyElement
    HTMLHtmlElement HTMLTemplateElement innerHeight location matchMedia MutationObserver NodeFilter QWebChannel qt ResizeObserver Text URL visualViewport XMLHttpRequest XPathResult`.trim().split(/\s+/);

function globalsFor(file) {
    const others = files.filter((name) => name !== file).flatMap((name) => declared.get(name));
    return Object.fromEntries([...browser, ...others].map((name) => [name, 'readonly']));
}

const rules = {
    'array-callback-return': 'error',
    'consistent-return': 'error',
    'constructor-super': 'error',
    'default-case-last': 'error',
    'eqeqeq': 'error',
    'for-direction': 'error',
    'getter-return': 'error',
    'no-array-constructor': 'error',
    'no-case-declarations': 'error',
    'no-class-assign': 'error',
    'no-compare-neg-zero': 'error',
    'no-cond-assign': 'error',
    'no-const-assign': 'error',
    'no-constant-binary-expression': 'error',
    'no-constant-condition': 'error',
    'no-control-regex': 'error',
    'no-debugger': 'error',
    'no-dupe-args': 'error',
    'no-dupe-class-members': 'error',
    'no-dupe-else-if': 'error',
    'no-dupe-keys': 'error',
    'no-duplicate-case': 'error',
    'no-empty': 'error',
    'no-empty-pattern': 'error',
    'no-eval': 'error',
    'no-fallthrough': 'error',
    'no-func-assign': 'error',
    'no-global-assign': 'error',
    'no-implied-eval': 'error',
    'no-inner-declarations': 'error',
    'no-invalid-regexp': 'error',
    'no-irregular-whitespace': 'error',
    'no-loop-func': 'error',
    'no-loss-of-precision': 'error',
    'no-misleading-character-class': 'error',
    'no-new-func': 'error',
    'no-prototype-builtins': 'error',
    'no-redeclare': 'error',
    'no-self-assign': 'error',
    'no-self-compare': 'error',
    'no-shadow': 'error',
    'no-sparse-arrays': 'error',
    'no-template-curly-in-string': 'error',
    'no-undef': 'error',
    'no-unexpected-multiline': 'error',
    'no-unmodified-loop-condition': 'error',
    'no-unreachable': 'error',
    'no-unsafe-finally': 'error',
    'no-unsafe-negation': 'error',
    'no-unsafe-optional-chaining': 'error',
    'no-unused-expressions': 'error',
    'no-unused-labels': 'error',
    // Another file or the editor may use a function declared at the top.
    'no-unused-vars': ['error', { vars: 'local' }],
    'no-useless-backreference': 'error',
    'no-useless-catch': 'error',
    'no-useless-escape': 'error',
    'no-useless-return': 'error',
    'no-var': 'error',
    'no-with': 'error',
    'prefer-const': 'error',
    'strict': ['error', 'global'],
    'use-isnan': 'error',
    'valid-typeof': 'error',
};

export default files.map((name) => ({
    files: [`${folder}/${name}`],
    languageOptions: { ecmaVersion: 2022, sourceType: 'script', globals: globalsFor(name) },
    linterOptions: { reportUnusedDisableDirectives: 'error' },
    rules,
}));
