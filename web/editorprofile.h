// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/siteschemehandler.h"
#include "web/spellcheck.h"

#include <QWebEngineProfile>
#include <QWebEngineUrlRequestInterceptor>

#include <memory>

namespace luma {

/// The web engine's profile for all open pages: stores nothing on disk, accepts no cookies, starts no
/// downloads. Shared by its users; each must keep it until its page has been deleted. Main thread.
class EditorProfile final : public QWebEngineProfile
{
    Q_OBJECT

public:
    static std::shared_ptr<EditorProfile> shared();

    EditorProfile();
    ~EditorProfile() override;

    [[nodiscard]] SiteSchemeHandler& files() { return m_files; }
    [[nodiscard]] SpellCheck& spellCheck() { return m_spellCheck; }

    /// A host name not used before in this process.
    static QString newHost();

private:
    void switchOffFeatures();

    SiteSchemeHandler m_files;
    SpellCheck m_spellCheck{*this};
    std::unique_ptr<QWebEngineUrlRequestInterceptor> m_filter;
};

} // namespace luma
