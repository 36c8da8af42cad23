// SPDX-License-Identifier: GPL-3.0-or-later
// What the editor asks about an element, which it names by its path.

'use strict';

// The size that an image or a video has by itself, in pixels; zeros if it isn't known.
function naturalSize(path) {
    const element = elementAtPath(path) || {};
    return [element.naturalWidth || element.videoWidth || 0, element.naturalHeight || element.videoHeight || 0];
}
