#include "aux_windows/FeedbackAddress.h"

#include "platform/foundation/ProductAddresses.h"

using namespace Qt::StringLiterals;

QString feedbackAddress(const FeedbackFacts &facts)
{
    // "runpath" is what the page calls the path.
    QString address = u"https://"_s + ProductAddresses::feedbackHost()
        + u"/inapp-feedback-v5"
          "?appid=%appid%&lang=%lang%&appver=%appver%&apped=%apped%&mode=%mode%&cpu=%cpu%"
          "&ram=%ram%&hdd=%hdd%&model=%model%&os=%os%&runpath=%path%"_s;
    const std::pair<QString, QString> values[] = {
        {u"%appid%"_s, facts.appid}, {u"%lang%"_s, facts.lang}, {u"%appver%"_s, facts.appver},
        {u"%apped%"_s, facts.apped}, {u"%mode%"_s, facts.mode}, {u"%cpu%"_s, facts.cpu},
        {u"%ram%"_s, facts.ram},     {u"%hdd%"_s, facts.hdd},   {u"%model%"_s, facts.model},
        {u"%os%"_s, facts.os},       {u"%path%"_s, facts.path},
    };
    for (const auto &[placeholder, value] : values)
        address.replace(placeholder, value);
    return address;
}
