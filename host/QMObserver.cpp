#include "host/QMObserver.h"

#include <algorithm>

CQMObserver::~CQMObserver() {
    while (!m_subjects.empty())
        m_subjects.back()->DetachObserver(*this);
}

CQMSubject::~CQMSubject() {
    while (!m_observers.empty())
        DetachObserver(*m_observers.back());
}

void CQMSubject::AttachObserver(CQMObserver& observer) {
    if (std::find(m_observers.begin(), m_observers.end(), &observer) != m_observers.end()) return;
    m_observers.push_back(&observer);
    observer.m_subjects.push_back(this);
}

void CQMSubject::DetachObserver(CQMObserver& observer) {
    std::erase(m_observers, &observer);
    std::erase(observer.m_subjects, this);
}

void CQMSubject::NotifyObservers(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto observers = m_observers;
    for (CQMObserver* observer : observers)
        if (std::find(m_observers.begin(), m_observers.end(), observer) != m_observers.end())
            observer->UpdateObserver(this, message, wParam, lParam);
}
