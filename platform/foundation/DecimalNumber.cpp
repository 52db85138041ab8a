#include "platform/foundation/DecimalNumber.h"

#include "platform/foundation/IcuLocale.h"

#include <unicode/decimfmt.h>
#include <unicode/numfmt.h>

#include <memory>
#include <optional>

namespace {

icu::UnicodeString icuText(const QString &text)
{
    return {text.utf16(), static_cast<int32_t>(text.size())};
}

std::unique_ptr<icu::NumberFormat> formatterFor(const QLocale &locale)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::NumberFormat> formatter(
        icu::NumberFormat::createInstance(icuLocale(locale), UNUM_DECIMAL, status));
    if (U_FAILURE(status))
        return nullptr;
    // The system's locale may mix: English texts with German numbers. Qt knows both, its name for
    // the locale only tells the first.
    if (auto *decimal = dynamic_cast<icu::DecimalFormat *>(formatter.get())) {
        icu::DecimalFormatSymbols symbols(*decimal->getDecimalFormatSymbols());
        using Symbols = icu::DecimalFormatSymbols;
        symbols.setSymbol(Symbols::kDecimalSeparatorSymbol, icuText(locale.decimalPoint()));
        symbols.setSymbol(Symbols::kGroupingSeparatorSymbol, icuText(locale.groupSeparator()));
        symbols.setSymbol(Symbols::kMinusSignSymbol, icuText(locale.negativeSign()));
        symbols.setSymbol(Symbols::kZeroDigitSymbol, icuText(locale.zeroDigit()));
        decimal->setDecimalFormatSymbols(symbols);
        // Spanish and others group from five digits on; this interface leaves that out unasked.
        decimal->setMinimumGroupingDigits(UNUM_MINIMUM_GROUPING_DIGITS_AUTO);
    }
    return formatter;
}

// Digits of an integer of any width; empty for other values.
QByteArray integerDigits(const QVariant &number)
{
    switch (number.typeId()) {
    case QMetaType::Bool:
        return number.toBool() ? "1" : "0";
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return QByteArray::number(number.toLongLong());
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return QByteArray::number(number.toULongLong());
    case QMetaType::QString: {
        bool ok = false;
        const qlonglong value = number.toString().toLongLong(&ok);
        if (ok)
            return QByteArray::number(value);
        const qulonglong large = number.toString().toULongLong(&ok);
        return ok ? QByteArray::number(large) : QByteArray();
    }
    default:
        return {};
    }
}

std::optional<double> real(const QVariant &number)
{
    const int type = number.typeId();
    if (type != QMetaType::Double && type != QMetaType::Float && type != QMetaType::QString)
        return std::nullopt;
    bool ok = false;
    const double value = number.toDouble(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

} // namespace

QString decimalNumber(const QVariant &number, const QLocale &locale)
{
    const QByteArray digits = integerDigits(number);
    const std::optional<double> value = digits.isEmpty() ? real(number) : std::nullopt;
    const auto formatter = formatterFor(locale);
    if (!formatter || (digits.isEmpty() && !value))
        return {};
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString text;
    if (value)
        formatter->format(*value, text, nullptr, status);
    else
        formatter->format(icu::StringPiece(digits.constData()), text, nullptr, status);
    return U_SUCCESS(status) ? QString::fromUtf16(text.getBuffer(), text.length()) : QString();
}
