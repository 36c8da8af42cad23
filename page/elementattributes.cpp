// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/elementattributes.h"

#include "base/ascii.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/servercode.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace luma {

namespace {

struct AttributeTexts
{
    Q_DECLARE_TR_FUNCTIONS(luma::ElementAttributes)
};

struct Rule
{
    std::string_view name;
    std::string_view elements; // "*": all
    AttributeKind kind;
    std::string_view keywords = {};
};

constexpr auto Text = AttributeKind::Text;
constexpr auto Number = AttributeKind::Number;
constexpr auto Address = AttributeKind::Address;
constexpr auto Keyword = AttributeKind::Keyword;
constexpr auto Boolean = AttributeKind::Boolean;

constexpr std::string_view referrerPolicies =
    "no-referrer no-referrer-when-downgrade same-origin origin strict-origin origin-when-cross-origin "
    "strict-origin-when-cross-origin unsafe-url";
constexpr std::string_view formEncodings = "application/x-www-form-urlencoded multipart/form-data text/plain";
constexpr std::string_view fillings =
    "on off name given-name family-name email username new-password current-password one-time-code organization "
    "street-address address-line1 address-level2 postal-code country-name tel url bday";

// The index of attributes of the HTML standard, what WAI-ARIA 1.2 adds for every element at the end. The first of an
// element are those that its users need first. Left out is contenteditable, with which the rendering works.
constexpr auto rules = std::to_array<Rule>({
    {"src", "img audio video iframe embed input script source track", Address},
    {"alt", "img area input", Text},
    {"href", "a area link base", Address},
    {"data", "object", Address},
    {"type", "button", Keyword, "submit reset button"},
    {"type", "input", Keyword,
     "text search tel url email password date month week time datetime-local number range color checkbox radio file "
     "submit image reset button hidden"},
    {"type", "ol", Keyword, "1 a A i I"},
    {"type", "script", Keyword, "module importmap"},
    {"type", "link embed object source a", Text},
    {"name", "button fieldset form iframe input object output select textarea details map meta slot", Text},
    {"value", "button option data input", Text},
    {"value", "li meter progress", Number},
    {"width", "img video iframe embed object canvas input source", Number},
    {"height", "img video iframe embed object canvas input source", Number},
    {"action", "form", Address},
    {"method", "form", Keyword, "get post dialog"},
    {"enctype", "form", Keyword, formEncodings},
    {"accept-charset", "form", Keyword, "utf-8"},
    {"novalidate", "form", Boolean},
    {"for", "label output", Text},
    {"placeholder", "input textarea", Text},
    {"required", "input select textarea", Boolean},
    {"readonly", "input textarea", Boolean},
    {"disabled", "button fieldset input optgroup option select textarea link", Boolean},
    {"checked", "input", Boolean},
    {"selected", "option", Boolean},
    {"multiple", "input select", Boolean},
    {"min", "input", Text},
    {"max", "input", Text},
    {"step", "input", Text},
    {"min", "meter", Number},
    {"max", "meter progress", Number},
    {"low", "meter", Number},
    {"high", "meter", Number},
    {"optimum", "meter", Number},
    {"minlength", "input textarea", Number},
    {"maxlength", "input textarea", Number},
    {"pattern", "input", Text},
    {"size", "input select", Number},
    {"list", "input", Text},
    {"accept", "input", Text},
    {"autocomplete", "form", Keyword, "on off"},
    {"autocomplete", "input select textarea", Keyword, fillings},
    {"rows", "textarea", Number},
    {"cols", "textarea", Number},
    {"wrap", "textarea", Keyword, "soft hard"},
    {"dirname", "input textarea", Text},
    {"form", "button fieldset input object output select textarea", Text},
    {"formaction", "button input", Address},
    {"formmethod", "button input", Keyword, "get post dialog"},
    {"formenctype", "button input", Keyword, formEncodings},
    {"formnovalidate", "button input", Boolean},
    {"formtarget", "button input", Keyword, "_self _blank _parent _top"},
    {"popovertarget", "button input", Text},
    {"popovertargetaction", "button input", Keyword, "toggle show hide"},
    {"label", "optgroup option track", Text},
    {"loading", "img iframe", Keyword, "lazy eager"},
    {"srcset", "img source", Text},
    {"sizes", "img source link", Text},
    {"decoding", "img", Keyword, "sync async auto"},
    {"usemap", "img", Text},
    {"ismap", "img", Boolean},
    {"poster", "video", Address},
    {"controls", "audio video", Boolean},
    {"autoplay", "audio video", Boolean},
    {"loop", "audio video", Boolean},
    {"muted", "audio video", Boolean},
    {"playsinline", "video", Boolean},
    {"preload", "audio video", Keyword, "none metadata auto"},
    {"kind", "track", Keyword, "subtitles captions descriptions chapters metadata"},
    {"srclang", "track", Text},
    {"default", "track", Boolean},
    {"srcdoc", "iframe", Text},
    {"allow", "iframe", Text},
    {"allowfullscreen", "iframe", Boolean},
    {"sandbox", "iframe", Keyword,
     "allow-downloads allow-forms allow-modals allow-popups allow-same-origin allow-scripts allow-top-navigation"},
    {"target", "a area base form", Keyword, "_self _blank _parent _top"},
    {"rel", "link", Keyword,
     "stylesheet icon canonical alternate author help license manifest next prev preconnect preload search"},
    {"rel", "a area form", Keyword,
     "alternate author bookmark external help license next nofollow noopener noreferrer prev search tag"},
    {"download", "a area", Text},
    {"hreflang", "a link", Text},
    {"ping", "a area", Text},
    {"shape", "area", Keyword, "default rect circle poly"},
    {"coords", "area", Text},
    {"media", "link meta source style", Keyword, "all screen print"},
    {"as", "link", Keyword, "fetch font image script style track"},
    {"imagesrcset", "link", Text},
    {"imagesizes", "link", Text},
    {"crossorigin", "img audio video link script", Keyword, "anonymous use-credentials"},
    {"integrity", "link script", Text},
    {"fetchpriority", "img link script", Keyword, "auto high low"},
    {"referrerpolicy", "a area iframe img link script", Keyword, referrerPolicies},
    {"charset", "meta", Keyword, "utf-8"},
    {"content", "meta", Text},
    {"http-equiv", "meta", Keyword,
     "content-type default-style refresh x-ua-compatible content-security-policy"},
    {"async", "script", Boolean},
    {"defer", "script", Boolean},
    {"nomodule", "script", Boolean},
    {"colspan", "td th", Number},
    {"rowspan", "td th", Number},
    {"headers", "td th", Text},
    {"scope", "th", Keyword, "row col rowgroup colgroup"},
    {"abbr", "th", Text},
    {"span", "col colgroup", Number},
    {"start", "ol", Number},
    {"reversed", "ol", Boolean},
    {"cite", "blockquote q del ins", Address},
    {"datetime", "time del ins", Text},
    {"open", "details dialog", Boolean},
    {"id", "*", Text},
    {"class", "*", Text},
    {"title", "*", Text},
    {"lang", "*", Text},
    {"dir", "*", Keyword, "ltr rtl auto"},
    {"style", "*", Text},
    {"hidden", "*", Boolean},
    {"translate", "*", Keyword, "yes no"},
    {"spellcheck", "*", Keyword, "true false"},
    {"tabindex", "*", Number},
    {"accesskey", "*", Text},
    {"autofocus", "*", Boolean},
    {"autocapitalize", "*", Keyword, "off none on sentences words characters"},
    {"inputmode", "*", Keyword, "none text tel url email numeric decimal search"},
    {"enterkeyhint", "*", Keyword, "enter done go next previous search send"},
    {"draggable", "*", Keyword, "true false"},
    {"inert", "*", Boolean},
    {"popover", "*", Keyword, "auto manual"},
    {"slot", "*", Text},
    {"itemscope", "*", Boolean},
    {"itemtype", "*", Address},
    {"itemid", "*", Address},
    {"itemprop", "*", Text},
    {"itemref", "*", Text},
    {"role", "*", Text},
    {"aria-label", "*", Text},
    {"aria-labelledby", "*", Text},
    {"aria-describedby", "*", Text},
    {"aria-hidden", "*", Keyword, "true false"},
});

bool isFor(const Rule& rule, const html::Element& element)
{
    if (rule.elements == "*")
        return true;
    const auto elements = words(rule.elements);
    return std::find(elements.begin(), elements.end(), element.tagName()) != elements.end();
}

/// Null if the standard doesn't know the attribute for this element.
const Rule* ruleFor(const html::Element& element, std::string_view name)
{
    if (element.nameSpace() != html::NameSpace::Html)
        return nullptr;
    const auto found = std::find_if(rules.begin(), rules.end(), [&](const Rule& rule) {
        return rule.name == name && isFor(rule, element);
    });
    return found == rules.end() ? nullptr : &*found;
}

ElementAttribute made(std::string_view name, const Rule* rule)
{
    ElementAttribute attribute;
    attribute.name = name;
    if (!rule)
        return attribute;
    attribute.kind = rule->kind;
    for (const std::string_view keyword : words(rule->keywords))
        attribute.keywords.append(
            QString::fromLatin1(keyword.data(), static_cast<qsizetype>(keyword.size())));
    return attribute;
}

} // namespace

std::vector<ElementAttribute> attributesFor(const html::Element& element)
{
    std::vector<ElementAttribute> attributes;
    if (html::isServerCode(element))
        return attributes;
    for (const html::Attribute& each : element.attributes()) {
        const std::string& name = each.name.text();
        if (html::withUnspelledCode(name) != name)
            continue;
        ElementAttribute& attribute = attributes.emplace_back(made(name, ruleFor(element, name)));
        attribute.isSet = true;
        attribute.value = QString::fromStdString(each.value);
    }
    for (const bool ofThisElement : {true, false}) {
        for (const Rule& rule : rules) {
            if ((rule.elements != "*") == ofThisElement && !element.hasAttr(rule.name) &&
                ruleFor(element, rule.name) == &rule)
                attributes.push_back(made(rule.name, &rule));
        }
    }
    return attributes;
}

Result<void> checkValue(AttributeKind kind, const QString& value)
{
    // Old pages give widths in percent, which browsers still take.
    static const QRegularExpression number(QStringLiteral("^\\s*[-+]?\\d*\\.?\\d+\\s*%?\\s*$"));
    if (kind != AttributeKind::Number || number.match(value).hasMatch() ||
        !serverCodeIn(value.toStdString()).empty())
        return {};
    return Error{AttributeTexts::tr("\u201c%1\u201d is not a number.").arg(value).toStdString()};
}

} // namespace luma
