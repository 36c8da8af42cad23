// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/sitefolder.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace luma {

/// What a preview shows: a page and the files that aren't saved yet.
struct PreviewSource
{
    QByteArray markup; ///< UTF-8
    SiteFolder files;
    QHash<QString, QByteArray> drafts =
        {}; ///< style sheets, UTF-8, by file; those outside the site are not used
    std::vector<std::string> indexNames = {}; ///< of the pages that a folder's address means
    QHash<QString, QByteArray> pages = {};    ///< other pages, as the drafts

    /// The page as bytes for another process of this version of LUMA.
    [[nodiscard]] QByteArray toBytes() const;
    /// Nothing if the bytes are not whole or of another version.
    static std::optional<PreviewSource> fromBytes(const QByteArray& bytes);
};

} // namespace luma
