// SPDX-License-Identifier: GPL-3.0-or-later
// The page's end of the bridge to the editor: reports that the page is ready, and post(name, body) sends one of
// the messages. Until there is a channel, messages wait here for it or for the editor to fetch them.

'use strict';

const bridge = {
    object: null,
    waiting: [],
};

function post(name, body) {
    send('post', name, body);
}

function send(method, ...values) {
    if (bridge.object)
        bridge.object[method](...values);
    else
        bridge.waiting.push([method, ...values]);
}

// The waiting messages, for an editor that no channel reaches.
function takeMessages() {
    return bridge.waiting.splice(0);
}

function useChannel(channel) {
    bridge.object = channel.objects.bridge;
    for (const [method, ...values] of takeMessages())
        send(method, ...values);
}

send('tellReady', location.href);
if (document.readyState === 'complete')
    send('tellLoaded', location.href);
else
    addEventListener('load', () => send('tellLoaded', location.href));

if (globalThis.qt && qt.webChannelTransport)
    new QWebChannel(qt.webChannelTransport, useChannel);
