#pragma once

#include <unistd.h>

/// As long as it lives, this process has the rights of an ordinary user: for the administrator no file is read-only.
class COrdinaryUser {
public:
    COrdinaryUser() : m_isAdministrator(geteuid() == 0)
    {
        if (m_isAdministrator && seteuid(kNobody) != 0)
            throw "cannot become an ordinary user";
    }
    ~COrdinaryUser()
    {
        if (m_isAdministrator && seteuid(0) != 0)
            _exit(1);
    }
    COrdinaryUser(const COrdinaryUser&) = delete;
    COrdinaryUser& operator=(const COrdinaryUser&) = delete;

private:
    static constexpr uid_t kNobody = 65534;
    bool m_isAdministrator;
};
