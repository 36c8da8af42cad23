// SPDX-License-Identifier: GPL-3.0-or-later
// The editor's commands by title: doCommand('Bold'), doCommand('Create Link', 'address'). A title that is neither
// in this table nor a text style names a command of the engine (execCommand) when its blanks are removed.

'use strict';

const commands = {
    'Create Link': createLink,
    'Edit Link': editLink,
    'Unlink': unlink,
    'Insert Image': insertImage,
    'Remove Format': () => removeStyle(''),
    'Justify Left': () => justify('left'),
    'Justify Center': () => justify('center'),
    'Justify Right': () => justify('right'),
    'Justify Full': () => justify('justify'),
    'Indent': () => indent(),
    'Outdent': () => outdent(),
    'Insert Ordered List': () => toggleStyle('Ordered List'),
    'Insert Unordered List': () => toggleStyle('Unordered List'),
};

function doCommand(title, argument) {
    if (Object.hasOwn(commands, title))
        commands[title](argument);
    else if (Object.hasOwn(textStyles, title) && textStyles[title].inline && currentRange() && currentRange().collapsed)
        toggleNextStyle(title);
    else if (Object.hasOwn(textStyles, title))
        toggleStyle(title);
    else
        execute(title.replaceAll(' ', ''), argument);
    cleanUp();
}

// A command of the engine, which must write elements, not styles.
function execute(command, argument = null) {
    document.execCommand('styleWithCSS', false, false);
    return document.execCommand(command, false, argument);
}

// Makes the selection a link; if nothing is selected, inserts the address as the link's text. In a link, changes that
// link.
function createLink(address) {
    const range = currentRange();
    const around = range && closestAt(range.commonAncestorContainer, 'a[href]');
    if (around)
        around.setAttribute('href', address);
    else if (range && !range.collapsed)
        execute('createLink', address);
    else
        insertLink(address, address);
}

// Changes nothing of the link at the selection but its address.
function editLink(address) {
    const link = linkAtSelection();
    if (link)
        link.setAttribute('href', address);
    else
        createLink(address);
}

// Removes the link at the caret, or the links in the selection around text and images.
function unlink() {
    const link = linkAtSelection();
    if (!link)
        return;
    if (currentRange().collapsed)
        getSelection().selectAllChildren(link);
    const others = leavesOf(currentRange()).filter((leaf) => !(leaf instanceof Text));
    removeInline('a[href]');
    for (const leaf of others)
        for (let around; leaf.isConnected && (around = closestAt(leaf, 'a[href]'));)
            keepingSelection(() => freeFrom(around, leaf));
}

function insertLink(address, text) {
    const link = document.createElement('a');
    link.setAttribute('href', address);
    link.textContent = text;
    insertNode(link);
}

function insertImage(address) {
    const image = document.createElement('img');
    image.setAttribute('src', address);
    image.alt = '';
    insertNode(image);
}

// No command of the engine, which would make a plain blank of a no-break space.
function insertCharacter(character) {
    insertNode(document.createTextNode(character));
}

// The selection stays beside a comment.
function insertMarkup(markup) {
    const template = document.createElement('template');
    template.innerHTML = markup;
    const node = document.importNode(template.content, true).firstChild;
    const range = currentRange();
    if (!range || !(node instanceof Comment))
        insertNode(node);
    else {
        const place = range.cloneRange();
        place.collapse(false);
        place.insertNode(node);
    }
}

// Inserts at the caret, or at the end of the page if there is none.
function insertNode(node) {
    if (!currentRange())
        setCaret(document.body, document.body.childNodes.length);
    const fragment = document.createDocumentFragment();
    fragment.append(node);
    insertFragment(fragment);
}
