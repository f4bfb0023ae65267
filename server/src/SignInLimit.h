#pragma once

#include <QString>

// Limits on wrong passwords (and second-factor codes) per client address and
// per account, counted in the database over a window, so that all server
// processes of the installation enforce one limit.
namespace SignInLimit {

constexpr int failuresPerAccount = 5;
constexpr int failuresPerAddress = 30;
constexpr int windowSeconds = 15 * 60;

// Seconds until another attempt may be made, 0 when one may be made now.
int retryAfter(const QString& address, const QString& email);
// An empty e-mail address counts for the address alone (a wrong code).
void failed(const QString& address, const QString& email);
// The account's count starts over; the address's stays.
void succeeded(const QString& email);

} // namespace SignInLimit
