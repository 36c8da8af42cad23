// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/sitefolder.h"

#include <QDialog>
#include <QUrl>

#include <filesystem>
#include <memory>

namespace Ui {
class LinkSheet;
}

namespace luma {

/// The sheet that asks for the address of a link or an image. Its button names the action and is enabled while
/// the address is acceptable: addresses that run scripts are not. Files outside the site are accepted with a
/// remark. Main thread.
class LinkSheet final : public QDialog
{
    Q_OBJECT

public:
    enum class Purpose { Link, EditLink, Image };

    explicit LinkSheet(QWidget* parent);
    ~LinkSheet() override;

    /// Opens the sheet with an initial address. The file chooser for images starts in the site.
    void begin(Purpose purpose, const QString& address, const SiteFolder& site);
    [[nodiscard]] Purpose purpose() const { return m_purpose; }

    /// An image's address as a URL: an absolute path becomes a file URL, anything else is parsed strictly
    /// (RFC 3986). Invalid if it can't be parsed.
    static QUrl imageUrl(const QString& address);
    /// The path of a local URL, as bytes.
    static std::filesystem::path fileOf(const QUrl& url);

signals:
    void confirmed(const QString& address);

private:
    void checkAddress();
    [[nodiscard]] QString adviceOn(const QString& address) const;
    void chooseFile();
    void closeSheet(QObject* sender);

    std::unique_ptr<Ui::LinkSheet> m_ui;
    SiteFolder m_site;
    Purpose m_purpose = Purpose::Link;
};

} // namespace luma
