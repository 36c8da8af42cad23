// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/sitefolder.h"

#include <QDialog>
#include <QUrl>

#include <filesystem>
#include <memory>
#include <optional>

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

    /// The file that an image's address names: a file URL, or the absolute path of a file that is there. Another address
    /// that begins with a slash counts from the site's root.
    static std::optional<std::filesystem::path> imageFile(const QString& address);
    /// The file that has the address as its very name, such as "100% #1.png", where the address leads to no other file.
    static std::optional<std::filesystem::path> fileNamed(const QString& address, const SiteFolder& site);
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
