// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <initializer_list>
#include <string>
#include <string_view>

namespace luma {

/// A text for the user from a room without a screen: `source`, English, in the language of the windows; lumactl, which loads no
/// translations, stays English. "%1", "%2" and so on, each once and in any order, stand for `values`, which may be any bytes.
/// So that the translators get it, the source is written as QT_TRANSLATE_NOOP("luma::Engines", "..."). Any thread.
std::string userText(const char* source, std::initializer_list<std::string_view> values = {});

} // namespace luma
