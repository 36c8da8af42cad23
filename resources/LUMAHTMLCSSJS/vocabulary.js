// SPDX-License-Identifier: GPL-3.0-or-later
// What may be written in a style sheet, as far as the engine knows it, and what it can't read.

'use strict';

// The keywords of the CSS specifications. Which of them a property takes, the engine says.
const styleKeywords = (
    'none auto normal absolute fixed relative static sticky block inline inline-block flex inline-flex ' +
    'grid inline-grid flow-root contents list-item table inline-table table-row table-cell table-column table-caption ' +
    'table-row-group table-header-group table-footer-group table-column-group ruby visible hidden collapse clip scroll overlay ' +
    'left right top bottom center start end flex-start flex-end self-start self-end baseline first last stretch ' +
    'space-between space-around space-evenly safe row row-reverse column column-reverse nowrap wrap wrap-reverse dense subgrid ' +
    'solid dashed dotted double groove ridge inset outset thin medium thick bold bolder lighter italic oblique small-caps ' +
    'all-small-caps xx-small x-small small large x-large xx-large xxx-large smaller larger condensed expanded ' +
    'underline overline line-through wavy blink uppercase lowercase capitalize full-width justify match-parent ' +
    'pre pre-wrap pre-line break-spaces break-word break-all keep-all anywhere manual ellipsis ' +
    'cover contain fill scale-down repeat repeat-x repeat-y no-repeat round space local border-box padding-box content-box text ' +
    'pointer default help wait progress crosshair move grab grabbing text not-allowed copy cell alias context-menu ' +
    'all-scroll col-resize row-resize n-resize e-resize s-resize w-resize ne-resize nw-resize se-resize sw-resize ew-resize ' +
    'ns-resize nesw-resize nwse-resize zoom-in zoom-out vertical-text no-drop both horizontal vertical all ' +
    'disc circle square decimal decimal-leading-zero lower-alpha upper-alpha lower-roman upper-roman lower-greek inside outside ' +
    'serif sans-serif monospace cursive fantasy system-ui ui-serif ui-sans-serif ui-monospace emoji ' +
    'linear ease ease-in ease-out ease-in-out step-start step-end infinite alternate alternate-reverse reverse forwards backwards ' +
    'running paused multiply screen overlay darken lighten color-dodge color-burn hard-light soft-light difference exclusion ' +
    'hue saturation color luminosity isolate add separate slice clone avoid avoid-page avoid-column page always ' +
    'ltr rtl embed bidi-override isolate-override plaintext horizontal-tb vertical-rl vertical-lr mixed upright sideways ' +
    'sub super text-top text-bottom middle min-content max-content fit-content farthest-corner closest-side ' +
    'smooth instant mandatory proximity pan-x pan-y pinch-zoom manipulation pixelated crisp-edges light dark ' +
    'layout style paint size strict content transform opacity scroll-position preserve-3d flat from-image ' +
    'balance stable loose strict currentcolor transparent open-quote close-quote no-open-quote no-close-quote weight ' +
    'optimizelegibility optimizespeed geometricprecision tabular-nums lining-nums oldstyle-nums proportional-nums ' +
    'slashed-zero common-ligatures no-common-ligatures historical-ligatures contextual no-contextual ' +
    'spell-out digits alphabetic hanging ideographic button textfield searchfield menulist nonzero evenodd butt bevel miter ' +
    'under over from-font skip-ink each-line historical-forms inherit initial unset revert').split(' ');
const styleColours = (
    'aliceblue antiquewhite aqua aquamarine azure beige bisque black blanchedalmond blue blueviolet brown burlywood cadetblue ' +
    'chartreuse chocolate coral cornflowerblue cornsilk crimson cyan darkblue darkcyan darkgoldenrod darkgray darkgreen ' +
    'darkkhaki darkmagenta darkolivegreen darkorange darkorchid darkred darksalmon darkseagreen darkslateblue darkslategray ' +
    'darkturquoise darkviolet deeppink deepskyblue dimgray dodgerblue firebrick floralwhite forestgreen fuchsia gainsboro ' +
    'ghostwhite gold goldenrod gray green greenyellow honeydew hotpink indianred indigo ivory khaki lavender lavenderblush ' +
    'lawngreen lemonchiffon lightblue lightcoral lightcyan lightgoldenrodyellow lightgray lightgreen lightpink lightsalmon ' +
    'lightseagreen lightskyblue lightslategray lightsteelblue lightyellow lime limegreen linen magenta maroon ' +
    'mediumaquamarine mediumblue mediumorchid mediumpurple mediumseagreen mediumslateblue mediumspringgreen mediumturquoise ' +
    'mediumvioletred midnightblue mintcream mistyrose moccasin navajowhite navy oldlace olive olivedrab orange orangered ' +
    'orchid palegoldenrod palegreen paleturquoise palevioletred papayawhip peachpuff peru pink plum powderblue purple ' +
    'rebeccapurple red rosybrown royalblue saddlebrown salmon sandybrown seagreen seashell sienna silver skyblue slateblue ' +
    'slategray snow springgreen steelblue tan teal thistle tomato turquoise violet wheat white whitesmoke yellow ' +
    'yellowgreen').split(' ');
// Each with arguments that show whether a property takes it.
const styleFunctions = [
    'rgb(0 0 0)', 'hsl(0 0% 0%)', 'url(x)', 'calc(1px)', 'calc(1)', 'min(1px)', 'max(1px)', 'clamp(1px, 1px, 1px)',
    'linear-gradient(red, red)', 'radial-gradient(red, red)', 'conic-gradient(red, red)', 'translate(1px)', 'rotate(1deg)',
    'scale(1)', 'skew(1deg)', 'blur(1px)', 'brightness(1)', 'contrast(1)', 'grayscale(1)', 'drop-shadow(1px 1px)',
    'cubic-bezier(0, 0, 1, 1)', 'steps(2)', 'repeat(2, 1px)', 'minmax(1px, 1fr)', 'fit-content(1px)', 'circle(1px)',
    'polygon(0 0)', 'inset(1px)', 'attr(x)', 'counter(x)'];

// The properties that the engine knows, and the names that page and sheets use.
function styleVocabulary() {
    const custom = new Set();
    for (const [{ style }] of styleRulesOfPage())
        for (const name of style)
            if (name.startsWith('--'))
                custom.add(name);
    const elements = Array.from(document.querySelectorAll('*')).filter((element) => !element.closest('head'));
    const classes = elements.flatMap((element) => Array.from(element.classList));
    const sorted = (names) => Array.from(new Set(names)).sort();
    return {
        properties: knownProperties(),
        customProperties: sorted(custom),
        classes: sorted(classes.concat(findAllDotClassNamesFromCSS())),
        ids: sorted(elements.map(({ id }) => id).filter(Boolean).concat(findAllIDNamesFromCSS())),
        tags: sorted(elements.map(({ localName }) => localName)),
    };
}

function knownProperties() {
    const names = [];
    for (const name in document.documentElement.style) {
        const written = name.replace(/[A-Z]/g, (letter) => `-${letter.toLowerCase()}`)
            .replace(/^(?=webkit-)/, '-');
        if (CSS.supports(written, 'inherit'))
            names.push(written);
    }
    return Array.from(new Set(names)).sort();
}

// The keywords, colours and functions that a property takes, in this order. One that takes any name has no list.
function styleValues(property) {
    const takesAnyName = CSS.supports(property, 'luma-is-no-keyword');
    const words = takesAnyName ? ['none', 'auto', 'inherit', 'initial', 'unset', 'revert'] : styleKeywords;
    const takes = (value) => CSS.supports(property, value);
    const colours = takesAnyName ? [] : styleColours;
    const functions = styleFunctions.filter(takes).map((text) => text.replace(/\(.*/, '()'));
    return Array.from(new Set([...[...words, ...colours].filter(takes), ...functions, 'var()']));
}

// For each [property, value] and each [selector]: 'ok', or what the engine can't read of it.
function judgedStyles(items) {
    const nowhere = document.createDocumentFragment();
    return items.map(([name, value]) => {
        if (value === undefined)
            return isSelector(nowhere, name) ? 'ok' : 'selector';
        if (CSS.supports(name, value))
            return 'ok';
        return CSS.supports(name, 'inherit') ? 'value' : 'property';
    });
}

function isSelector(root, text) {
    try {
        root.querySelector(text);
        return true;
    } catch {
        return false;
    }
}
