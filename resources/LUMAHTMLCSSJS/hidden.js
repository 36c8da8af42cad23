// SPDX-License-Identifier: GPL-3.0-or-later
// Elements that the outline hides for looking only. An animation that has ended hides them, so no attribute changes.

'use strict';

const hidden = { animations: [] };

// Hides the elements at these paths, and no others.
function hideElements(paths) {
    for (const animation of hidden.animations)
        animation.cancel();
    const unseen = { visibility: 'hidden', opacity: 0 };
    hidden.animations = paths.map((path) => elementAtPath(path)).filter(Boolean)
        .map((element) => element.animate([unseen, unseen], { fill: 'forwards' }));
}
