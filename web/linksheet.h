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

/// The sheet that asks for the address of a link or an image. Its confirming button says what it does and is
/// enabled while the address is one that may stand in a page: addresses that run scripts are not. A file that
/// is not in the site is only remarked upon. Main thread.
class LinkSheet final : public QDialog
{
    Q_OBJECT

public:
    enum class Purpose { Link, EditLink, Image };

    explicit LinkSheet(QWidget* parent);
    ~LinkSheet() override;

    /// Opens the sheet with an address to begin with. Images are looked for in the site.
    void begin(Purpose purpose, const QString& address, const SiteFolder& site);
    [[nodiscard]] Purpose purpose() const { return m_purpose; }

    /// The URL that an image's address is: a whole path on disk becomes a file's, anything else is read
    /// strictly (RFC 3986). Invalid when it is none.
    static QUrl imageUrl(const QString& address);
    /// A local URL's path, as bytes.
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
