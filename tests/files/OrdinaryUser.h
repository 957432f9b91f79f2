#pragma once

#include <unistd.h>

/// As long as it lives, this process and the programs that it starts have the rights of an ordinary user: for the
/// administrator no file is read-only. Not the effective user alone: a program that starts with two is kept from its
/// environment and from looking for its leaks.
class COrdinaryUser {
public:
    COrdinaryUser() : m_isAdministrator(geteuid() == 0)
    {
        if (m_isAdministrator && setresuid(kNobody, kNobody, 0) != 0)
            throw "cannot become an ordinary user";
    }
    ~COrdinaryUser()
    {
        if (m_isAdministrator && setresuid(0, 0, 0) != 0)
            _exit(1);
    }
    COrdinaryUser(const COrdinaryUser&) = delete;
    COrdinaryUser& operator=(const COrdinaryUser&) = delete;

private:
    static constexpr uid_t kNobody = 65534;
    bool m_isAdministrator;
};
