#include "shell/settings_form.h"

#include "settings/settings_store.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFontComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>

#include <memory>

namespace {

#ifdef Q_OS_WIN
constexpr bool isWindows = true;
#else
constexpr bool isWindows = false;
#endif

// Empty: the row has no label of its own.
QString labelBeside(const SettingRow &row)
{
    const bool hasOwn = std::holds_alternative<SettingRows::Heading>(row.editor) ||
                        std::holds_alternative<SettingRows::Check>(row.editor);
    return hasOwn ? QString() : row.label;
}

QString picturePatterns()
{
    QStringList patterns;
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    for (const QByteArray &format : formats)
        patterns << QStringLiteral("*.") + QString::fromLatin1(format);
    return patterns.join(QLatin1Char(' '));
}

QString pathError(const QString &label, const QString &path, bool isFolder)
{
    const QString name = label.chopped(1); // without its colon
    if (path.isEmpty())
        return QString();
    if (!QDir::isAbsolutePath(path))
        return QStringLiteral("“%1”需要完整的路径。").arg(name);
    if (!isFolder && !QImageReader(path).canRead())
        return QStringLiteral("“%1”不是可以显示的图片。").arg(name);
    return QString();
}

} // namespace

SettingsForm::SettingsForm(const QVector<SettingRow> &rows, QWidget *parent) : SettingsPage(parent)
{
    auto *form = new QFormLayout(this);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->setVerticalSpacing(10);
    form->setHorizontalSpacing(12);
    for (const SettingRow &row : rows) {
        QWidget *const widget =
            std::visit([&](const auto &editor) { return make(row.label, editor); }, row.editor);
        if (std::holds_alternative<SettingRows::Heading>(row.editor))
            form->addRow(widget);
        else
            form->addRow(labelBeside(row), widget);
        if (row.isForWindows && !isWindows) {
            widget->setEnabled(false);
            widget->setToolTip(QStringLiteral("只在 Windows 上可用"));
            if (auto *edit = widget->findChild<QLineEdit *>())
                edit->setPlaceholderText(widget->toolTip());
        }
    }
}

template <typename T>
void SettingsForm::addField(const Key<T> &key, std::function<T()> get, std::function<void(T)> set)
{
    m_values.insert(&key, [get] { return QVariant::fromValue(get()); });
    m_fields << Field{[&key, set](const SettingsStore &store) { set(store.get(key)); },
                      [&key, get](SettingsStore &store) {
                          if (store.get(key) != get())
                              store.set(key, get());
                      }};
}

void SettingsForm::tellEdited()
{
    if (!m_isLoading)
        emit edited();
}

QWidget *SettingsForm::make(const QString &label, const SettingRows::Heading &)
{
    auto *heading = new QLabel(label, this);
    heading->setObjectName(QStringLiteral("settingsHeading"));
    return heading;
}

QWidget *SettingsForm::make(const QString &label, const SettingRows::Check &row)
{
    auto *box = new QCheckBox(label, this);
    addField<bool>(
        *row.key, [box] { return box->isChecked(); },
        [box](bool isChecked) { box->setChecked(isChecked); });
    connect(box, &QCheckBox::toggled, this, &SettingsForm::tellEdited);
    box->setObjectName(QLatin1String(row.key->name));
    return box;
}

QWidget *SettingsForm::make(const QString &, const SettingRows::Number &row)
{
    auto *box = new QSpinBox(this);
    box->setRange(row.min, row.max);
    box->setSuffix(QLatin1Char(' ') + QString::fromUtf8(row.unit));
    box->setMaximumWidth(140);
    addField<int>(
        *row.key, [box] { return box->value(); }, [box](int value) { box->setValue(value); });
    connect(box, QOverload<int>::of(&QSpinBox::valueChanged), this, &SettingsForm::tellEdited);
    box->setObjectName(QLatin1String(row.key->name));
    return box;
}

QWidget *SettingsForm::make(const QString &, const SettingRows::Percent &row)
{
    auto *pair = new QWidget(this);
    auto *slider = new QSlider(Qt::Horizontal, pair);
    slider->setRange(0, 100);
    auto *shown = new QLabel(pair);
    shown->setMinimumWidth(shown->fontMetrics().horizontalAdvance(QStringLiteral("100%")));
    auto *layout = new QHBoxLayout(pair);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(slider, 1);
    layout->addWidget(shown);
    const auto show = [shown](int value) { shown->setText(QStringLiteral("%1%").arg(value)); };
    show(0);
    connect(slider, &QSlider::valueChanged, shown, show);
    connect(slider, &QSlider::valueChanged, this, &SettingsForm::tellEdited);
    addField<int>(
        *row.key, [slider] { return slider->value(); },
        [slider](int value) { slider->setValue(value); });
    slider->setObjectName(QLatin1String(row.key->name));
    return pair;
}

QWidget *SettingsForm::make(const QString &, const SettingRows::FontFamily &row)
{
    auto *box = new QFontComboBox(this);
    const QString whenEmpty = row.whenEmpty;
    // A family that is not installed here stays as it is.
    addField<QString>(
        *row.key,
        [box, whenEmpty] {
            const QString family = box->currentText().trimmed();
            return family == whenEmpty ? QString() : family;
        },
        [box, whenEmpty](const QString &family) {
            box->setEditText(family.isEmpty() ? whenEmpty : family);
        });
    connect(box, &QComboBox::editTextChanged, this, &SettingsForm::tellEdited);
    box->setObjectName(QLatin1String(row.key->name));
    return box;
}

QWidget *SettingsForm::make(const QString &, const SettingRows::Choice &row)
{
    auto *box = new QComboBox(this);
    const QStringList values = QString::fromUtf8(row.key->choices).split(QLatin1Char(';'));
    for (int i = 0; i < values.size(); ++i)
        box->addItem(row.names.at(i), values.at(i));
    addField<QString>(
        *row.key, [box] { return box->currentData().toString(); },
        [box](const QString &value) { box->setCurrentIndex(box->findData(value)); });
    connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &SettingsForm::tellEdited);
    box->setObjectName(QLatin1String(row.key->name));
    return box;
}

QWidget *SettingsForm::make(const QString &, const SettingRows::Index &row)
{
    auto *box = new QComboBox(this);
    box->addItems(row.names);
    addField<int>(
        *row.key, [box] { return box->currentIndex(); },
        [box](int index) { box->setCurrentIndex(index < box->count() ? index : 0); });
    connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &SettingsForm::tellEdited);
    box->setObjectName(QLatin1String(row.key->name));
    return box;
}

QWidget *SettingsForm::make(const QString &label, const SettingRows::Folder &row)
{
    return makePath(label, *row.key, true);
}

QWidget *SettingsForm::make(const QString &label, const SettingRows::Picture &row)
{
    return makePath(label, *row.key, false);
}

QWidget *SettingsForm::makePath(const QString &label, const Key<QString> &key, bool isFolder)
{
    auto *pair = new QWidget(this);
    auto *edit = new QLineEdit(pair);
    edit->setClearButtonEnabled(true);
    auto *browse = new QPushButton(QStringLiteral("浏览..."), pair);
    browse->setAutoDefault(false);
    auto *layout = new QHBoxLayout(pair);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(edit, 1);
    layout->addWidget(browse);
    const auto path = [edit] { return QDir::fromNativeSeparators(edit->text().trimmed()); };
    // What was stored before may be gone by now; that must not keep the user from saving the rest.
    const auto loaded = std::make_shared<QString>();
    addField<QString>(key, path, [edit, path, loaded](const QString &value) {
        edit->setText(QDir::toNativeSeparators(value));
        *loaded = path();
    });
    m_checks << [label, path, loaded, isFolder] {
        return path() == *loaded ? QString() : pathError(label, path(), isFolder);
    };
    connect(edit, &QLineEdit::textChanged, this, &SettingsForm::tellEdited);
    connect(browse, &QPushButton::clicked, this, [this, edit, path, isFolder] {
        const QString chosen =
            isFolder
                ? QFileDialog::getExistingDirectory(this, QStringLiteral("选择文件夹"), path())
                : QFileDialog::getOpenFileName(this, QStringLiteral("选择图片"), path(),
                                               QStringLiteral("图片 (%1)").arg(picturePatterns()));
        if (!chosen.isEmpty())
            edit->setText(QDir::toNativeSeparators(chosen));
    });
    edit->setObjectName(QLatin1String(key.name));
    return pair;
}

void SettingsForm::load(const SettingsStore &store)
{
    m_isLoading = true;
    for (const Field &field : qAsConst(m_fields))
        field.load(store);
    m_isLoading = false;
}

QString SettingsForm::error() const
{
    for (const auto &check : m_checks) {
        const QString error = check();
        if (!error.isEmpty())
            return error;
    }
    return QString();
}

void SettingsForm::save(SettingsStore &store) const
{
    for (const Field &field : m_fields)
        field.save(store);
}
