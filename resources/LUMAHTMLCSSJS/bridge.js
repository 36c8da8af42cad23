// The page's end of the bridge: it tells that the page stands there, and post(name, body) sends one of the four
// messages to the editor.
// What is posted before the channel stands is sent, in order, as soon as it does.

const bridge = {
    object: null,
    waiting: [],
};

function post(name, body) {
    if (bridge.object)
        bridge.object.post(name, body);
    else
        bridge.waiting.push([name, body]);
}

new QWebChannel(qt.webChannelTransport, (channel) => {
    bridge.object = channel.objects.bridge;
    bridge.object.tellReady(location.href);
    for (const [name, body] of bridge.waiting.splice(0))
        post(name, body);
    if (document.readyState === 'complete')
        bridge.object.tellLoaded(location.href);
    else
        addEventListener('load', () => bridge.object.tellLoaded(location.href));
});
