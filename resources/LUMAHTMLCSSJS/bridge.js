// SPDX-License-Identifier: GPL-3.0-or-later
// The page's end of the bridge: it tells that the page stands there, and post(name, body) sends one of the four
// messages to the editor. While no channel stands, messages wait until it does or the editor fetches them.

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

// What waits, for an editor whose channel is dead.
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
