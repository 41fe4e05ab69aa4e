#include "text/UFormat.h"

FormatPair UFormat(UStringRef<UTF8> key, UStringRef<UTF8> defaultText,
                   const FormatOverrideContext& context) {
    return FormatPair{key, context.Override(key, defaultText)};
}

FormatPair UFormat(UStringRef<UTF8> key, UStringRef<UTF8> defaultText) {
    return UFormat(key, defaultText, GlobalFormatOverrideContext());
}

AutoUString<UTF8> MakeUString(FormattedStringIterator first, FormattedStringIterator last) {
    AutoUString<UTF8> result;
    for (; first != last; ++first) {
        result.Append(*first);
    }
    return result;
}
