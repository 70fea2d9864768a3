// Compiled on its own by a test that expects clang's thread-safety analysis to reject it: a
// guarded member read and written without its mutex.
#include "bqlcommon/Mutex.h"

class Account {
public:
    int balance() { return balance_; }
    void deposit(int amount) {
        bql::MutexLock lock(mutex_);
        balance_ += amount;
    }

private:
    bql::Mutex mutex_;
    int balance_ BQL_GUARDED_BY(mutex_) = 0;
};

int main() {
    Account account;
    account.deposit(1);
    return account.balance();
}
