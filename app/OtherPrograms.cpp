#include "app/OtherPrograms.h"

#include "app/FileCommands.h"
#include "changes/CellDifferences.h"
#include "files/StoredDifferences.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QEvent>
#include <QWidget>

#include <utility>

namespace {

QString NameOf(const std::filesystem::path& path)
{
    return ToQPath(path.filename());
}

QString Differing(std::size_t count)
{
    return count == 1 ? COtherPrograms::tr("1 value shown differs")
                      : COtherPrograms::tr("%1 values shown differ").arg(count);
}

QString OverwrittenText(const ForeignChanges& overwritten)
{
    const QString name = NameOf(overwritten.path);
    const std::size_t count = overwritten.places.size();
    if (count == 1)
        return COtherPrograms::tr("%1: 1 value that another program had written was overwritten.").arg(name);
    return COtherPrograms::tr("%1: %2 values that another program had written were overwritten.")
        .arg(name, QString::number(count));
}

bool IsSame(const FileLook& one, const FileLook& other)
{
    if (one.state != other.state || one.state != FileLook::State::Changed)
        return one.state == other.state;
    return one.changes->path == other.changes->path && one.changes->places == other.changes->places &&
           one.changes->after.Cells().IsLaidOutLike(other.changes->after.Cells()) &&
           DifferencesOf(one.changes->after, other.changes->after).empty();
}

} // namespace

COtherPrograms::COtherPrograms(CRecipeFrame& frame, CFileCommands& fileCommands, CSaveCommands& saveCommands,
                               CRecipeDataShowView& dataPane, QWidget& window)
    : m_frame(frame),
      m_fileCommands(fileCommands),
      m_saveCommands(saveCommands),
      m_dataPane(dataPane)
{
    window.installEventFilter(this);
    connect(&m_watch, &CFileWatch::Prompted, this, &COtherPrograms::Look);
}

void COtherPrograms::Follow()
{
    const CRecipeDocument& document = m_frame.Document();
    m_watch.Watch(document.IsOpen() && !document.IsNew() ? ToQPath(document.Path()) : QString());
    if (m_told.state == FileLook::State::Changed && m_told.changes->path != document.Path())
        WithdrawChanges();
}

bool COtherPrograms::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::WindowActivate) {
        m_watch.TakeUp();
        Look();
    }
    return QObject::eventFilter(watched, event);
}

void COtherPrograms::Look()
{
    CRecipeDocument& document = m_frame.Document();
    document.CheckPlan();
    if (document.IsPlanOpen())
        m_saveCommands.Update();
    const FileLook look = document.Look();
    if (IsSame(look, m_told))
        return; // the user may have dismissed it
    Tell(look);
}

void COtherPrograms::Tell(const FileLook& look)
{
    const QString name = NameOf(m_frame.Document().Path());
    m_told = look;
    switch (look.state) {
    case FileLook::State::AsKnown:
        Withdraw();
        break;
    case FileLook::State::Changed:
        TellChanged(look.changes);
        break;
    case FileLook::State::Gone:
        TellMissing(tr("%1 was removed by another program. Its values are only in this window.").arg(name));
        break;
    case FileLook::State::NoFile:
        TellMissing(tr("%1 is no file any more. Its values are only in this window.").arg(name));
        break;
    }
}

/// "oven.rcp was changed by another program: 3 values shown differ."
void COtherPrograms::TellChanged(const std::shared_ptr<const ForeignChanges>& changes)
{
    StripMessage message{
        tr("%1 was changed by another program: %2.").arg(NameOf(changes->path), Differing(changes->places.size())), {}};
    message.buttons << StripButton{tr("Show"), [this, changes] { List(*changes); }}
                    << StripButton{tr("Read again"), [this] { m_fileCommands.OnDiscardChanges(); }}
                    << StripButton{tr("Keep mine"), [this, changes] { KeepMine(*changes); }};
    m_frame.ShowStrip(StripSubject::ChangedByOthers, message);
}

void COtherPrograms::TellMissing(const QString& text)
{
    m_frame.ShowStrip(StripSubject::ChangedByOthers,
                      {text, {{tr("Save as..."), [this] { m_fileCommands.OnFileSaveAs(); }}}});
}

void COtherPrograms::WithdrawChanges()
{
    if (m_told.state != FileLook::State::AsKnown)
        Withdraw();
}

void COtherPrograms::Withdraw()
{
    m_told = {};
    m_saveCommands.Withdraw(std::exchange(m_pListed, {}));
    m_frame.WithdrawStrip(StripSubject::ChangedByOthers);
}

void COtherPrograms::KeepMine(const ForeignChanges& changes)
{
    m_frame.Document().KeepShown(changes);
    Withdraw();
    m_dataPane.StoredChanged();
    m_dataPane.setFocus(Qt::OtherFocusReason); // the button goes
    m_frame.UpdateCommands();
}

void COtherPrograms::List(const ForeignChanges& changes)
{
    const std::u16string format(TextOf(m_frame.Document().Format().name));
    m_pListed = std::make_shared<CCellDifferences>(changes.before, changes.after, changes.places,
                                                   ChangeSubject{changes.path, format});
    m_saveCommands.Show({m_pListed, tr("Changed by another program"), Differing(changes.places.size()), changes.path,
                         changes.after.Cells()});
}

void COtherPrograms::TellOverwritten()
{
    Withdraw();
    const SaveNotes& notes = m_frame.Document().LastSave();
    if (!notes.overwritten && !notes.wasBusy)
        return;
    QString text =
        notes.overwritten
            ? OverwrittenText(*notes.overwritten)
            : tr("%1 was saved while another program was writing it.").arg(NameOf(m_frame.Document().Path()));
    if (notes.version && notes.version->IsSafe())
        text += tr(" What it held is kept as an earlier version.");
    StripMessage message{text, {}};
    if (notes.overwritten)
        message.buttons << StripButton{tr("Show"), [this, overwritten = notes.overwritten] { List(*overwritten); }};
    if (notes.version && notes.version->IsSafe())
        message.buttons << StripButton{tr("Earlier versions…"), [this, path = m_frame.Document().Path()] {
                                           if (path == m_frame.Document().Path())
                                               emit VersionsAskedFor();
                                           else
                                               m_frame.TellEdit(
                                                   tr("Open %1 to see its earlier versions.").arg(ToQPath(path)));
                                       }};
    m_frame.ShowStrip(StripSubject::ChangedByOthers, message);
}
