// SPDX-License-Identifier: GPL-3.0-or-later
// The editor's commands by their titles: doCommand('Bold'), doCommand('Create Link', 'address'). Those that are
// neither in the table nor a text style are the engine's own (execCommand), named by the title without blanks.

const commands = {
    'Create Link': createLink,
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
    else if (Object.hasOwn(textStyles, title))
        toggleStyle(title);
    else
        execute(title.replaceAll(' ', ''), argument);
    cleanUp();
}

// A command of the engine's. It writes elements, not styles, whatever was asked before.
function execute(command, argument = null) {
    document.execCommand('styleWithCSS', false, false);
    return document.execCommand(command, false, argument);
}

// Makes the selection a link; with nothing selected the address itself is the text.
function createLink(address) {
    if (currentRange() && !currentRange().collapsed)
        execute('createLink', address);
    else
        insertLink(address, address);
}

// Takes the link at the caret, or the links in the selection, away; their text is selected then, so that it can
// be made another link.
function unlink() {
    const link = linkAtSelection();
    if (!link)
        return;
    if (currentRange().collapsed)
        getSelection().selectAllChildren(link);
    removeInline('a[href]');
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

// At the caret, or at the page's end while it has none.
function insertNode(node) {
    if (!currentRange())
        setCaret(document.body, document.body.childNodes.length);
    const fragment = document.createDocumentFragment();
    fragment.append(node);
    insertFragment(fragment);
}
