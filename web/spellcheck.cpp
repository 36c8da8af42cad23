// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/spellcheck.h"

#include "base/mainhop.h"
#include "base/pathtext.h"
#include "base/statefolder.h"
#include "base/workitem.h"

#include <QLocale>
#include <QPointer>
#include <QWebEngineProfile>

namespace luma {

namespace {

constexpr const char* pathVariable = "QTWEBENGINE_DICTIONARIES_PATH";

} // namespace

SpellCheck::SpellCheck(QWebEngineProfile& profile) : m_profile(profile) {}

void SpellCheck::preparePath()
{
    // The engine ignores a folder that isn't there when it starts.
    const auto copies = SpellDictionaries::ofTheDesktop().copies();
    if (!qEnvironmentVariableIsSet(pathVariable) && makePrivateFolder(copies))
        qputenv(pathVariable, textOf(copies).toLocal8Bit());
}

void SpellCheck::setOn(bool on)
{
    if (on == m_isOn)
        return;
    m_isOn = on;
    update();
    emit changed(on);
}

void SpellCheck::setLanguages(const QStringList& languages)
{
    const QStringList wanted = languages.isEmpty() ? QStringList(QLocale().bcp47Name()) : languages;
    if (wanted == m_languages)
        return;
    m_languages = wanted;
    update();
}

void SpellCheck::update()
{
    ++m_updates;
    if (!m_isOn) {
        m_profile.setSpellCheckEnabled(false);
        return;
    }
    start(std::make_shared<WorkItem>(),
          [languages = m_languages, update = m_updates, self = QPointer(this)](const WorkItem&) {
              const SpellDictionaries dictionaries = SpellDictionaries::ofTheDesktop();
              QStringList names;
              QStringList missing;
              for (const QString& language : languages) {
                  const QString name = dictionaries.nameFor(language);
                  const QString copy = name.isEmpty() ? QString() : dictionaries.provide(name);
                  if (copy.isEmpty())
                      missing.append(language);
                  else if (!names.contains(copy))
                      names.append(copy);
              }
              onMain(self, [&](SpellCheck& check) {
                  if (update == check.m_updates)
                      check.use(names, missing);
              });
          });
}

void SpellCheck::use(const QStringList& names, const QStringList& missing)
{
    m_profile.setSpellCheckLanguages(names);
    m_profile.setSpellCheckEnabled(!names.isEmpty());
    emit languagesUsed(missing);
}

} // namespace luma
