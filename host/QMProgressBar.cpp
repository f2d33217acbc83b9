#include "host/QMProgressBar.h"

// Not in the header: each library would have an instance of its own.
IQMProgressBar* IQMProgressBar::m_pInstance = nullptr;
