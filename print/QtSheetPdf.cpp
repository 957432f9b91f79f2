#include "print/QtSheetPdf.h"

#include "print/SheetPainter.h"

#include <QBuffer>
#include <QPdfWriter>

namespace {

constexpr int kResolution = 720; // dots per inch

} // namespace

Outcome CQtSheetPdf::Make(const SheetForPdf& sheet, std::string& pdf, CProgress& progress)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Outcome outcome = Outcome::Failed;
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(kResolution);
        writer.setPageLayout(PageLayoutOf(sheet.paper));
        writer.setTitle(QString::fromStdU16String(sheet.sheet.title));
        writer.setCreator(QStringLiteral("Vantor"));
        writer.addFileAttachment(QString::fromLatin1(AttachmentName(sheet.sheet)),
                                 QByteArray::fromStdString(sheet.records), QStringLiteral("application/jsonl"));
        CSheetPainter painter(sheet.sheet);
        outcome = painter.LayOut(writer.pageLayout().paintRect(QPageLayout::Point).size(), progress);
        if (outcome == Outcome::Done)
            outcome = painter.Paint(writer, 0, painter.PageCount() - 1, progress);
    }
    pdf = outcome == Outcome::Done ? buffer.data().toStdString() : std::string();
    return outcome;
}
