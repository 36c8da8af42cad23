// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/requestfilter.h"
#include "web/siteschemehandler.h"

#include <QWebEngineProfile>

#include <memory>

namespace luma {

/// The web engine's profile that all open pages share: nothing is kept on disk, no cookie is taken, no
/// download starts. It lives as long as someone holds it; a holder gives it back after its page is deleted.
class EditorProfile final : public QWebEngineProfile
{
    Q_OBJECT

public:
    static std::shared_ptr<EditorProfile> shared();

    EditorProfile();
    ~EditorProfile() override;

    [[nodiscard]] SiteSchemeHandler& files() { return m_files; }

    /// A host name that no page of this run had before.
    static QString newHost();

private:
    void switchOffWhatAnEditorNeedsNot();

    SiteSchemeHandler m_files;
    RequestFilter m_filter;
};

} // namespace luma
