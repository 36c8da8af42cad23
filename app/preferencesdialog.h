// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class PreferencesDialog;
}

namespace luma {

class Preferences;

/// The sheet of the user's preferences, in pages. OK stores and saves them, Cancel changes nothing. Main thread only.
class PreferencesDialog final : public QDialog
{
    Q_OBJECT

public:
    /// `preferences` outlives the dialog.
    explicit PreferencesDialog(Preferences& preferences, QWidget* parent);
    ~PreferencesDialog() override;

    void accept() override;

private:
    Preferences& m_preferences;
    std::unique_ptr<Ui::PreferencesDialog> m_ui;

    void showGeneral();
    void storeGeneral();
    void showLinks();
    void storeLinks();
    void showPublishing();
    void storePublishing();
    void showPages();
    void storePages();
    void chooseTemplateFolder();
    void letPagesScroll();
};

} // namespace luma
