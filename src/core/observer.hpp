#pragma once

#include "core/messages.hpp"
#include "core/session.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

namespace telvox {

struct Button;

/// A job, or an action on the network, is over: its line is down, its inputs are usable again.
struct JobEnd {
    const Button *by;          ///< that started it
    Outcome outcome;           ///< never `refused`: what a check refuses has not begun
    std::vector<Message> said; ///< the boxes that tell of it
};

/// Watches the program. All of it is told within an event, and what an observer does then is part of the
/// event.
class Observer {
  public:
    /// Ports are about to be opened, or looked at: whoever holds one only to look lets go of it.
    virtual void wants_ports() {}
    /// A job or action has begun by this button; of a job nothing has been sent yet.
    virtual void started(const Button &) {}
    /// Told once, after the handler that ended it.
    virtual void ended(const JobEnd &) {}
    /// What the job that has ended came to, where that is more than its own end: a comparison, or that
    /// another device answered. Told before `happened`.
    virtual void came_to(const JobEnd &) {}
    /// Every status text, also one that the same handler replaces.
    virtual void status(std::string_view) {}
    /// What goes into the log of a network dialog: ping's answers and what the module says.
    virtual void logged(std::string_view) {}
    /// The formats of the serial lines have been saved for good.
    virtual void settings_saved() {}
    /// A handler has run to its end, nothing is drawn yet.
    virtual void happened() {}
    /// The event is over and all of it is told: what is done now is an event of its own.
    virtual void settled() {}
    /// Time to draw the windows again.
    virtual void draw() {}

  protected:
    ~Observer() = default;
};

class Observers {
  public:
    /// The observer lives as long as events happen, or is removed before.
    void add(Observer &observer) { all_.push_back(&observer); }
    void remove(Observer &observer) { std::erase(all_, &observer); }

    template <class... Of, class... Given>
    void tell(void (Observer::*what)(Of...), const Given &...given) const {
        for (Observer *observer : all_)
            (observer->*what)(given...);
    }

  private:
    std::vector<Observer *> all_;
};

} // namespace telvox
