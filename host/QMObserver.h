#pragma once

#include "framework/Export.h"
#include "framework/windows/WindowTypes.h"

#include <cstddef>
#include <vector>

class CQMSubject;

/// Somebody who is told what happens to a subject. Takes itself off its subjects when it goes.
class VEXA_API CQMObserver {
  public:
    CQMObserver() = default;
    virtual ~CQMObserver();
    CQMObserver(const CQMObserver&) = delete;
    CQMObserver& operator=(const CQMObserver&) = delete;

    virtual void UpdateObserver(CQMSubject* subject, UINT message, WPARAM wParam, LPARAM lParam) = 0;

  private:
    friend class CQMSubject;
    std::vector<CQMSubject*> m_subjects;
};

/// Something that others observe. Observers may come and go while they are told.
class VEXA_API CQMSubject {
  public:
    CQMSubject() = default;
    virtual ~CQMSubject();
    CQMSubject(const CQMSubject&) = delete;
    CQMSubject& operator=(const CQMSubject&) = delete;

    void AttachObserver(CQMObserver& observer); ///< once, however often it is called
    void DetachObserver(CQMObserver& observer);
    std::size_t GetObserverCount() const { return m_observers.size(); }
    /// Tells those who observe now and still do when it is their turn, in the order of attaching.
    void NotifyObservers(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

  private:
    std::vector<CQMObserver*> m_observers;
};
