#include "helpers/fileEnum.h"

#include "platform/foundation/DirectoryWalk.h"
#include "platform/foundation/ExceptionText.h"
#include "platform/foundation/Perform.h"
#include "platform/foundation/SystemServices.h"

#include <QMetaMethod>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace {

void logException(const QString &place)
{
    if (SystemLog *log = systemServices().systemLog)
        log->write(u"%1 threw an exception: %2"_s.arg(place, currentExceptionText()));
}

/// Sends "onFileFound:" to an object, which is asked only once how it takes it.
class Delegate
{
public:
    explicit Delegate(QObject *object)
        : m_selector(u"onFileFound:"_s)
        , m_object(perform::responds(object, m_selector) ? object : nullptr)
    {
        if (!m_object)
            return;
        const QMetaObject *meta = m_object->metaObject();
        const int index = meta->indexOfMethod("onFileFound(FileRecord)");
        if (index >= 0 && meta->method(index).methodType() != QMetaMethod::Signal)
            m_method = meta->method(index);
    }

    explicit operator bool() const { return m_object; }

    void send(const FileRecord &record)
    {
        if (!m_object)
            return;
        try {
            if (m_method.isValid())
                m_method.invoke(m_object, Qt::DirectConnection, Q_ARG(FileRecord, record));
            else
                perform::send(m_object, m_selector, {QVariant::fromValue(record)});
        } catch (...) {
            if (!std::exchange(m_threw, true))
                logException(m_selector.name());
        }
    }

private:
    Selector m_selector;
    QPointer<QObject> m_object;
    QMetaMethod m_method; ///< takes the record as it is
    bool m_threw = false;
};

} // namespace

void fileEnum::enumAtPath(const QString &path, FileRecords *result)
{
    enumAtPathEx(path, result, nullptr);
}

void fileEnum::enumAtPathEx(const QString &path, FileRecords *result, QObject *delegate)
{
    try {
        Delegate receiver(delegate);
        DirectoryWalk::run(path, [&](FileRecord &&record) {
            if (!receiver) {
                if (result)
                    result->push_back(std::move(record));
                return;
            }
            // The receiver's is a record of its own: it may do with the list as it likes.
            if (result)
                result->push_back(record);
            receiver.send(record);
        });
    } catch (...) {
        logException(u"The enumeration of files"_s);
    }
}
