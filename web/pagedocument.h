// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/sitefolder.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

struct SubtreeChange;

/// The page's document as the rendering sees it; its tree is the master copy. Main thread.
class PageDocument
{
public:
    PageDocument() = default;
    PageDocument(const PageDocument&) = delete;
    PageDocument& operator=(const PageDocument&) = delete;
    virtual ~PageDocument() = default;

    /// The tree as markup, UTF-8, for the rendering to show.
    [[nodiscard]] virtual std::string pageMarkup() = 0;
    /// The page's location and the files it may read.
    [[nodiscard]] virtual SiteFolder siteFolder() const = 0;

    /// Takes an edit that the user made in the rendering: the root element's markup,
    /// UTF-8, and the edit's name in the undo history ("Typing"). The doctype and comments outside the root
    /// element are not part of it and stay.
    virtual void setHTML(std::string_view markup, const QString& name) = 0;
    /// The same for a part of the page, which is not trusted; false if it doesn't fit the tree, which then stays
    /// unchanged.
    virtual bool takeChange(const SubtreeChange& change, const QString& name) = 0;
    /// The hash that the rendering must have to show this tree (luma::fingerprint).
    [[nodiscard]] virtual std::uint32_t fingerprint() const = 0;
    struct Source
    {
        std::string text;      ///< UTF-8
        std::size_t place = 0; ///< in bytes
    };
    /// The page's source as saving writes it, and where the selected element begins.
    [[nodiscard]] virtual Source source() const = 0;
    /// Why a source is no page, a sentence, and where in it the trouble is, in bytes.
    struct Refusal
    {
        std::string reason;
        std::optional<std::size_t> place;
    };
    /// Takes an edit of that source in the source panel and selects the element at the place of the caret. Where it is
    /// refused, the old one stays.
    virtual std::optional<Refusal> setSource(const Source& source) = 0;
    virtual void buildCSSMenu() = 0;
    /// The rendering is shown: ask it for the names that its style sheets define.
    virtual void loadCSSNames() = 0;
    /// The page sent text for the element selected in the outline.
    virtual void applyCallbackText(const QString& text) = 0;
    /// The caret is in the element at `path`: positions among element children, down from the root element
    /// (the empty path). There may be no such element.
    virtual void setActiveElement(const std::vector<int>& path) = 0;
    /// The page is shown; the width it lacks room for, in CSS pixels, or 0.
    virtual void fitWindowToPage(int width) = 0;
    /// The link from this page to a file, for a `src` or `href`.
    [[nodiscard]] virtual QString linkTo(const std::filesystem::path& file) const = 0;

    virtual void undo() = 0;
    virtual void redo() = 0;
};

} // namespace luma
