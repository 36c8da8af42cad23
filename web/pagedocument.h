// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/sitefolder.h"

#include <QString>

#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// What the rendering asks of the page's document, whose tree is the master copy. Main thread.
class PageDocument
{
public:
    PageDocument() = default;
    PageDocument(const PageDocument&) = delete;
    PageDocument& operator=(const PageDocument&) = delete;
    virtual ~PageDocument() = default;

    /// The tree as markup, UTF-8.
    [[nodiscard]] virtual std::string pageMarkup() const = 0;
    /// Where the page stands and what it may read.
    [[nodiscard]] virtual SiteFolder siteFolder() const = 0;

    /// Takes an edit that the user made in the rendering or the source panel: the root element's markup,
    /// UTF-8, and the edit's name in the undo history ("Typing"). The doctype and comments outside the root
    /// element are not part of it and stay.
    virtual void setHTML(std::string_view markup, const QString& name) = 0;
    /// Rebuilds the rendering from the tree.
    virtual void reload() = 0;
    virtual void buildCSSMenu() = 0;
    /// Gathers the names that the rendering's style sheets define.
    virtual void loadCSSNames() = 0;
    /// Text that the page sent for the element selected in the outline.
    virtual void applyCallbackText(const QString& text) = 0;
    /// The caret stands in the element that `path` leads to: positions among element children, from the root
    /// element (the empty path) on. The path may lead nowhere.
    virtual void setActiveElement(const std::vector<int>& path) = 0;
    /// The page's width in CSS pixels, when it has been shown.
    virtual void fitWindowToPage(int width) = 0;
    /// The link from this page to a file, as it stands in a `src` or `href`.
    [[nodiscard]] virtual QString linkTo(const std::filesystem::path& file) const = 0;

    virtual void undo() = 0;
    virtual void redo() = 0;
};

} // namespace luma
