#pragma once

#include <cstddef>
#include <new>

namespace RVCore {

// An allocator for single objects that come and go by the thousand: memory that is given back waits, on its thread,
// for the next object of the same size. A class asks for it with `using IsRecycled = std::true_type`.
template <class T> class RecyclingAllocator {
public:
    using value_type = T;

    RecyclingAllocator() = default;
    template <class U> RecyclingAllocator(const RecyclingAllocator<U>&) {}

    T* allocate(std::size_t count)
    {
        Waiting& waiting = Waiting::ofThread();
        if (count != 1 || !waiting.first)
            return static_cast<T*>(::operator new(count * sizeof(T)));
        Place* place = waiting.first;
        waiting.first = place->next;
        --waiting.count;
        return reinterpret_cast<T*>(place);
    }

    void deallocate(T* memory, std::size_t count)
    {
        if (count != 1 || Waiting::isGone || Waiting::ofThread().count == most)
            return ::operator delete(memory);
        Waiting& waiting = Waiting::ofThread();
        waiting.first = new (memory) Place{waiting.first};
        ++waiting.count;
    }

    friend bool operator==(const RecyclingAllocator&, const RecyclingAllocator&) { return true; }

private:
    // Nothing waits where a sanitizer watches: it shall see every object come and go.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr std::size_t most = 0;
#else
    static constexpr std::size_t most = 100'000;
#endif

    struct Place {
        Place* next;
    };
    struct Waiting {
        Place* first = nullptr;
        std::size_t count = 0;
        // Objects that outlive their thread's list, as those in static variables do, are given back at once.
        inline static thread_local bool isGone = false;

        static Waiting& ofThread()
        {
            thread_local Waiting waiting;
            return waiting;
        }
        ~Waiting()
        {
            isGone = true;
            while (Place* place = first) {
                first = place->next;
                ::operator delete(place);
            }
        }
    };
    static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
};

} // namespace RVCore
