#include "views/ExportTableDlg.h"

#include "ui_ExportTableDlg.h"
#include "views/TextCrossing.h"

#include <QLocale>
#include <QPushButton>

#include <array>
#include <utility>

namespace {

enum Numbers { kPoint, kComma };

constexpr std::array kSeparators{u';', u',', u'\t'}; // as the choices stand
constexpr std::array kUnits{TableExportForm::Units::None, TableExportForm::Units::InTitles,
                            TableExportForm::Units::OwnLine};
constexpr int kWidth = 64; // average characters, at first
constexpr std::size_t kRowsShown = 2;

template <class Values>
auto Chosen(const Values& values, const QComboBox& box)
{
    return values[static_cast<std::size_t>(box.currentIndex())];
}

} // namespace

CExportTableDlg::CExportTableDlg(const CRecipeRows& rows, std::vector<ExportedRows> choices, QWidget* parent)
    : QDialog(parent),
      m_rows(rows),
      m_choices(std::move(choices)),
      m_pUi(std::make_unique<Ui::CExportTableDlg>())
{
    m_pUi->setupUi(this);
    for (const ExportedRows& choice : m_choices)
        m_pUi->comboRows->addItem(choice.name);
    m_pUi->buttons->button(QDialogButtonBox::Ok)->setText(tr("&Export…"));
    const bool hasComma = QLocale::system().decimalPoint() == QLatin1String(",");
    m_pUi->comboNumbers->setCurrentIndex(hasComma ? kComma : kPoint);
    m_pUi->comboSeparator->setCurrentIndex(hasComma ? 0 : 1); // as the spreadsheets of these languages have it
    m_pUi->comboUnits->setCurrentIndex(1);
    for (const QComboBox* box : {m_pUi->comboRows, m_pUi->comboSeparator, m_pUi->comboNumbers, m_pUi->comboUnits})
        connect(box, &QComboBox::currentIndexChanged, this, &CExportTableDlg::ShowLines);
    for (const QCheckBox* box : {m_pUi->checkTitles, m_pUi->checkPlaces})
        connect(box, &QCheckBox::toggled, this, &CExportTableDlg::ShowLines);
    ShowLines();
    resize(kWidth * fontMetrics().averageCharWidth(), sizeHint().height());
}

CExportTableDlg::~CExportTableDlg() = default;

TableExportForm CExportTableDlg::Form() const
{
    return {.separator = Chosen(kSeparators, *m_pUi->comboSeparator),
            .point = m_pUi->comboNumbers->currentIndex() == kComma ? u',' : u'.',
            .hasTitles = m_pUi->checkTitles->isChecked(),
            .hasPlaces = m_pUi->checkPlaces->isChecked(),
            .units = Chosen(kUnits, *m_pUi->comboUnits)};
}

CTableExport CExportTableDlg::Export() const
{
    return {m_rows, Form(), Chosen(m_choices, *m_pUi->comboRows).rows};
}

void CExportTableDlg::ShowLines()
{
    QStringList lines = ToQString(Export().FirstLines(kRowsShown)).split(QStringLiteral("\r\n"));
    lines.removeLast(); // after the last line's end
    for (QString& line : lines)
        line.replace(u'\t', u'→');
    while (lines.size() < static_cast<qsizetype>(kRowsShown) + 2)
        lines.append(QString()); // so that the dialog keeps its height
    m_pUi->labelLines->setText(lines.join(u'\n'));
}
