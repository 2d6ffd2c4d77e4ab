#include "PreviewSwitches.h"

#include <QtCore/QLocale>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGridLayout>

namespace {

bool isFromRight(const QString &locale)
{
    return QLocale(locale).textDirection() == Qt::RightToLeft;
}

QString nameOf(const QString &locale)
{
    const QLocale named(locale);
    return QString("%1, %2 (%3)")
        .arg(QLocale::languageToString(named.language()), QLocale::countryToString(named.country()), locale);
}

void select(QComboBox *box, const QVariant &value)
{
    box->setCurrentIndex(qMax(0, box->findData(value)));
}

} // namespace

PreviewSwitches::PreviewSwitches(const PreviewSettings &settings, QWidget *parent)
    : QWidget(parent)
    , m_locale(new QComboBox(this))
    , m_scale(new QComboBox(this))
    , m_phase(new QComboBox(this))
    , m_simple(addCheck("simple", "&Simple", settings.isSimple, "The short tip, for users who want less"))
    , m_dark(addCheck("dark", "&Dark", settings.isDark, "The colours of a dark desktop"))
    , m_mirrored(addCheck("mirrored", "&Right to left",
                          settings.direction == Qt::RightToLeft || isFromRight(settings.locale),
                          "As for languages that are read from the right"))
    , m_still(addCheck("still", "Without &motion", settings.isStill, "For users who want nothing to move"))
    , m_unavailable(addCheck("unavailable", "&Unavailable", settings.isUnavailable,
                             "As when the command cannot be used now"))
{
    m_locale->setObjectName("locale");
    m_locale->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_scale->setObjectName("scale");
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0, 4.0})
        m_scale->addItem(QString("%1%").arg(scale * 100), scale);
    if (m_scale->findData(settings.scale) < 0)
        m_scale->addItem(QString("%1%").arg(settings.scale * 100), settings.scale);
    select(m_scale, settings.scale);
    m_phase->setObjectName("phase");
    m_phase->addItem("As it comes", int(TipPhase::AsItComes));
    m_phase->addItem("First phase", int(TipPhase::First));
    m_phase->addItem("Kept open", int(TipPhase::Kept));
    select(m_phase, int(settings.phase));
    m_locale->addItem(nameOf(settings.locale), settings.locale);
    auto *const boxes = new QFormLayout;
    boxes->addRow("&Language", m_locale);
    boxes->addRow("S&cale", m_scale);
    boxes->addRow("&Tip", m_phase);
    auto *const layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(boxes, 0, 0, 1, 2);
    layout->addWidget(m_simple, 1, 0);
    layout->addWidget(m_dark, 1, 1);
    layout->addWidget(m_mirrored, 2, 0);
    layout->addWidget(m_still, 2, 1);
    layout->addWidget(m_unavailable, 3, 0);
    const auto indexChanged = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(m_locale, indexChanged, this, &PreviewSwitches::followLocale);
    for (const QComboBox *const box : {m_locale, m_scale, m_phase})
        connect(box, indexChanged, this, &PreviewSwitches::changed);
}

QCheckBox *PreviewSwitches::addCheck(const QString &name, const QString &text, bool isChecked,
                                     const QString &help)
{
    auto *const box = new QCheckBox(text, this);
    box->setObjectName(name);
    box->setToolTip(help);
    box->setChecked(isChecked);
    connect(box, &QCheckBox::toggled, this, &PreviewSwitches::changed);
    return box;
}

void PreviewSwitches::setLocales(const QStringList &locales)
{
    const QSignalBlocker blocker(m_locale);
    const QString chosen = m_locale->currentData().toString();
    QStringList all = locales + QStringList(chosen);
    all.removeDuplicates();
    all.sort();
    m_locale->clear();
    for (const QString &locale : qAsConst(all))
        m_locale->addItem(nameOf(locale), locale);
    select(m_locale, chosen);
}

// The direction of a language is switched with it, and may be switched by itself.
void PreviewSwitches::followLocale()
{
    const QSignalBlocker blocker(m_mirrored);
    m_mirrored->setChecked(isFromRight(m_locale->currentData().toString()));
}

void PreviewSwitches::read(PreviewSettings &settings) const
{
    settings.locale = m_locale->currentData().toString();
    settings.scale = m_scale->currentData().toDouble();
    settings.phase = TipPhase(m_phase->currentData().toInt());
    settings.isSimple = m_simple->isChecked();
    settings.isDark = m_dark->isChecked();
    settings.isStill = m_still->isChecked();
    settings.isUnavailable = m_unavailable->isChecked();
    settings.direction = m_mirrored->isChecked() ? Qt::RightToLeft : Qt::LeftToRight;
}
