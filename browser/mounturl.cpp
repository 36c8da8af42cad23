// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/mounturl.h"

namespace luma {

namespace {

QString encoded(const QString& text)
{
    if (!text.isValidUtf16())
        return {};
    // Letters, digits and "-._~" are never encoded; these are the others that a path may hold.
    static const QByteArray allowed = "!$&'()*+,;=:@/";
    return QString::fromLatin1(text.toUtf8().toPercentEncoding(allowed));
}

} // namespace

QString mountURL(const QString& protocol, const QString& server, const QString& volume, const QString& path)
{
    QString url = protocol + encoded(server) + QLatin1Char('/');
    if (protocol != QLatin1String("FTP"))
        url += encoded(volume);
    if (protocol != QLatin1String("SMB"))
        url += encoded(path);
    return url;
}

} // namespace luma
