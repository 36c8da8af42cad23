// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/endpointnormaliser.h"

#include "base/observeddictionary.h"
#include "browser/endpoint.h"

namespace luma {

namespace {

QString trimmed(QStringView text)
{
    const auto isBlank = [](QChar character) { return character == u' ' || character == u'\t'; };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text.toString();
}

} // namespace

void normaliseEndpoint(ObservedDictionary& endpoint)
{
    const QVariantMap values = endpoint.values();
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        if (entry->typeId() != QMetaType::QString)
            continue;
        QString text = trimmed(entry->toString());
        if (entry.key() == endpoint::path && text.endsWith(u'/'))
            text.chop(1);
        endpoint.setValue(entry.key(), text);
    }
}

} // namespace luma
