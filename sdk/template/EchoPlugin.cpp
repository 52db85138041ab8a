// A complete plugin: a page that repeats what is typed and counts on its sidebar row how often.
#include <SolvanePlugin.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;

// The module's root object is the plugin. It takes up to two roles: mndPlugin makes it a plugin at
// all, mndPluginDelegate (optional) tells it when its page comes and goes.
class EchoPlugin : public QObject, public mndPlugin, public mndPluginDelegate
{
    Q_OBJECT
    // solvane_add_plugin() writes plugin.json. The host reads it before it runs any of this code.
    Q_PLUGIN_METADATA(IID mndPlugin_iid FILE "plugin.json")
    Q_INTERFACES(mndPlugin mndPluginDelegate)

public:
    // Called once, on the main thread, before the window shows: be quick, start no work here.
    Dictionary pluginInitialize(const Dictionary &parameters) override
    {
        m_core = qobject_cast<mndCore *>(parameters.value<QObject *>(u"core"_s));
        if (!m_core)
            return {}; // an absent dictionary refuses loading
        makeView();

        Dictionary info = Dictionary::make();
        info.setValue(u"id"_s, m_id);
        info.setValue(u"name"_s, m_core->stringResource(u"SZ_ECHO_NAME"_s, u"Echo"_s));
        // "parent" is the title of the heading, so it is asked for like every other text.
        info.setValue(u"parent"_s, m_core->stringResource(u"SZ_HEADING_SYSTEM"_s, u"System"_s));
        info.setValue(u"view"_s, QVariant::fromValue<QWidget *>(m_view.get()));
        return info;
    }

    // Start what keeps the page up to date when it shows, and stop it when it goes.
    void onViewShow() override { m_core->log(u"Echo is shown"_s); }

private:
    void makeView()
    {
        m_view = std::make_unique<QWidget>(); // ours; the host only borrows it
        FillsParent::install(m_view.get());   // as large as the content area
        auto *input = new QLineEdit;
        input->setAccessibleName(m_core->stringResource(u"SZ_ECHO_INPUT"_s, u"Text to repeat"_s));
        auto *button = new QPushButton(m_core->stringResource(u"SZ_ECHO_SAY"_s, u"Say it"_s));
        auto *output = new QLabel;
        output->setTextFormat(Qt::PlainText);
        auto *column = new QVBoxLayout(m_view.get());
        column->addWidget(input);
        column->addWidget(button, 0, Qt::AlignLeft);
        column->addWidget(output);
        column->addStretch(1);
        QObject::connect(button, &QPushButton::clicked, this, [this, input, output] {
            output->setText(input->text());
            m_core->pluginSetBadge(m_id, ++m_count);
        });
    }

    const QString m_id = u"plugin.sample-echo"_s;
    mndCore *m_core = nullptr; // the host's; it outlives every plugin
    std::unique_ptr<QWidget> m_view;
    quint64 m_count = 0;
};

#include "EchoPlugin.moc"
