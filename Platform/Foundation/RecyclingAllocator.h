#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <mutex>
#include <new>
#include <utility>

namespace RVCore {

// An allocator for single objects that come and go by the thousand: they lie side by side, in the order in which they
// came, and memory that is given back waits, on its thread, for the next object of the same size. What was given back
// in one go is used again in the order of its addresses, or every time that a tree of objects is taken down and built
// anew would scatter it some more. It is never given back to the heap. A class asks for it with
// `using IsRecycled = std::true_type`.
template <class T> class RecyclingAllocator {
public:
    using value_type = T;

    RecyclingAllocator() = default;
    template <class U> RecyclingAllocator(const RecyclingAllocator<U>&) {}

    T* allocate(std::size_t count)
    {
        if (count != 1 || !isRecycling)
            return static_cast<T*>(::operator new(count * sizeof(T)));
        return reinterpret_cast<T*>(Waiting::ofThread().take());
    }

    void deallocate(T* memory, std::size_t count)
    {
        if (count != 1 || !isRecycling)
            return ::operator delete(memory);
        auto* place = new (memory) Place{nullptr};
        if (Waiting::isGone)
            return Abandoned::add(place, place);
        Waiting::ofThread().add(place);
    }

    friend bool operator==(const RecyclingAllocator&, const RecyclingAllocator&) { return true; }

private:
    // Nothing waits where a sanitizer watches: it shall see every object come and go.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr bool isRecycling = false;
#else
    static constexpr bool isRecycling = true;
#endif

    union Place {
        Place* next;
        alignas(T) std::byte object[sizeof(T)];
    };
    static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

    static bool isBefore(const Place* left, const Place* right) { return std::less<>()(left, right); }

    // Takes the places off the front of a list that are in order, or in the opposite one, and puts them in order.
    static Place* takeRun(Place*& list)
    {
        Place* first = list;
        Place* last = list;
        list = list->next;
        if (list && isBefore(list, first)) {
            while (list && isBefore(list, first)) {
                Place* place = std::exchange(list, list->next);
                place->next = std::exchange(first, place);
            }
        } else {
            while (list && isBefore(last, list)) {
                last = last->next = list;
                list = list->next;
            }
        }
        last->next = nullptr;
        return first;
    }

    static Place* merged(Place* left, Place* right)
    {
        Place* result = nullptr;
        Place** end = &result;
        while (left && right) {
            Place*& lower = isBefore(left, right) ? left : right;
            *end = lower;
            end = &lower->next;
            lower = lower->next;
        }
        *end = left ? left : right;
        return result;
    }

    // Merges runs, of which there mostly are few: objects tend to go in the order in which they came.
    static Place* sorted(Place* list)
    {
        std::array<Place*, 64> merges{}; // of 1, 2, 4 … runs
        while (list) {
            Place* run = takeRun(list);
            std::size_t size = 0;
            for (; merges[size]; ++size)
                run = merged(std::exchange(merges[size], nullptr), run);
            merges[size] = run;
        }
        Place* result = nullptr;
        for (Place* merge : merges)
            result = merged(merge, result);
        return result;
    }

    // What threads that have ended leave to the others.
    struct Abandoned {
        inline static std::mutex mutex;
        inline static Place* first = nullptr;

        static void add(Place* from, Place* to)
        {
            const std::lock_guard lock(mutex);
            to->next = std::exchange(first, from);
        }
        static Place* takeAll()
        {
            const std::lock_guard lock(mutex);
            return std::exchange(first, nullptr);
        }
    };

    struct Waiting {
        Place* first = nullptr;
        Place* given = nullptr; // back since the last object was made, the latest first
        Place* fresh = nullptr; // from here on nothing was used yet
        Place* endOfFresh = nullptr;
        // Objects that outlive their thread's list, as those in static variables do, are left to the others at once.
        inline static thread_local bool isGone = false;

        static Waiting& ofThread()
        {
            thread_local Waiting waiting;
            return waiting;
        }
        Place* take()
        {
            if (given)
                sortGiven();
            if (first)
                return std::exchange(first, first->next);
            if (fresh == endOfFresh && !refill())
                return std::exchange(first, first->next);
            return fresh++;
        }
        void add(Place* place) { place->next = std::exchange(given, place); }
        void sortGiven()
        {
            Place* last = nullptr;
            Place* places = sorted(std::exchange(given, nullptr));
            for (Place* place = places; place; place = place->next)
                last = place;
            last->next = std::exchange(first, places);
        }
        // True when there are fresh places now, false when there are used ones.
        bool refill()
        {
            constexpr std::size_t atOnce = 32;
            first = Abandoned::takeAll();
            if (first)
                return false;
            constexpr std::align_val_t line{64}; // of the cache, so that no place is in more of them than need be
            fresh = static_cast<Place*>(::operator new(atOnce * sizeof(Place), line));
            endOfFresh = fresh + atOnce;
            return true;
        }
        ~Waiting()
        {
            isGone = true;
            while (fresh != endOfFresh)
                add(fresh++);
            if (given)
                sortGiven();
            if (!first)
                return;
            Place* last = first;
            while (last->next)
                last = last->next;
            Abandoned::add(first, last);
        }
    };
};

} // namespace RVCore
