// SPDX-License-Identifier: Apache-2.0
#include "platform/Converter.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include "platform/Text.h"

namespace kycb::text {
namespace {

constexpr std::size_t kChunk = 4096;

/// ICU's own substitution drops characters that are usually invisible; here each one counts.
void WriteSubstitute(const void*, UConverterFromUnicodeArgs* arguments, const UChar*, int32_t,
                     UChar32, UConverterCallbackReason reason, UErrorCode* error) {
    if (reason > UCNV_IRREGULAR) return;
    *error = U_ZERO_ERROR;
    ucnv_cbFromUWriteSub(arguments, 0, error);
}

bool SubstituteWithQuestionMark(UConverter* converter) {
    constexpr UChar kQuestionMark[] = u"?";
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setSubstString(converter, kQuestionMark, 1, &error);
    ucnv_setFromUCallBack(converter, WriteSubstitute, nullptr, nullptr, nullptr, &error);
    ucnv_setFallback(converter, false);
    return U_SUCCESS(error);
}

void SetInvalidBytes(UConverter* converter, InvalidBytes invalid) {
    const auto callback =
        invalid == InvalidBytes::kRefuse ? UCNV_TO_U_CALLBACK_STOP : UCNV_TO_U_CALLBACK_SUBSTITUTE;
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter, callback, nullptr, nullptr, nullptr, &error);
}

}  // namespace

void Converter::Close::operator()(UConverter* converter) const {
    ucnv_close(converter);
}

std::optional<Converter> Converter::Open(std::string_view encoding) {
    // An empty name, or one that an embedded NUL cuts short, would open another encoding.
    if (encoding.empty() || encoding.find('\0') != std::string_view::npos) return std::nullopt;
    UErrorCode error = U_ZERO_ERROR;
    Converter converter(ucnv_open(std::string(encoding).c_str(), &error));
    if (U_FAILURE(error) || !SubstituteWithQuestionMark(converter.converter_.get())) {
        return std::nullopt;
    }
    return converter;
}

std::string Converter::Encode(std::wstring_view text) {
    const std::u16string units = ToUtf16(text);
    const UChar* source = units.data();
    const UChar* const sourceEnd = source + units.size();
    std::string bytes;
    ucnv_resetFromUnicode(converter_.get());
    for (UErrorCode error = U_BUFFER_OVERFLOW_ERROR; error == U_BUFFER_OVERFLOW_ERROR;) {
        char chunk[kChunk];
        char* target = chunk;
        error = U_ZERO_ERROR;
        ucnv_fromUnicode(converter_.get(), &target, chunk + kChunk, &source, sourceEnd, nullptr,
                         true, &error);
        bytes.append(chunk, target);
    }
    return bytes;
}

std::optional<std::wstring> Converter::Decode(std::string_view bytes, InvalidBytes invalid) {
    const char* source = bytes.data();
    const char* const sourceEnd = source + bytes.size();
    std::u16string units;
    SetInvalidBytes(converter_.get(), invalid);
    ucnv_resetToUnicode(converter_.get());
    UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
    while (error == U_BUFFER_OVERFLOW_ERROR) {
        UChar chunk[kChunk];
        UChar* target = chunk;
        error = U_ZERO_ERROR;
        ucnv_toUnicode(converter_.get(), &target, chunk + kChunk, &source, sourceEnd, nullptr, true,
                       &error);
        units.append(chunk, target);
    }
    if (U_FAILURE(error)) return std::nullopt;
    return FromUtf16(units);
}

}  // namespace kycb::text
