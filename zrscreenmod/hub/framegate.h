// Who may play frames into a tile that changes its participant.
#pragma once

#include <atomic>
#include <thread>

/// Keeps a former participant's frame out of the next one's picture: a tile that several
/// participants share in turn is opened for one of them at a time, and rebinding it waits for the
/// frames that other threads are copying. That takes as long as one copy.
///
/// `shut` and `open` belong to the thread that has made the gate, `pass` to any thread.
class FrameGate
{
public:
    FrameGate() = default;
    FrameGate(const FrameGate&) = delete;
    FrameGate& operator=(const FrameGate&) = delete;

    /// Lets nobody pass; nobody is inside when it returns.
    void shut()
    {
        m_key.store(nullptr);
        while (m_inside.load() > 0)
            std::this_thread::yield();
    }
    /// Lets those pass who come with this key.
    void open(const void* key) { m_key.store(key); }
    [[nodiscard]] const void* key() const { return m_key.load(); }

    /// Runs `body` if the gate is open for the key. The key's memory is not touched.
    /// @return whether it ran
    template<typename Body>
    bool pass(const void* key, Body&& body)
    {
        if (!key || m_key.load() != key)
            return false;
        // The owner does not shut the gate while it is inside itself, and would wait for itself if
        // it were counted.
        const Stay stay(std::this_thread::get_id() == m_owner ? nullptr : &m_inside);
        // Asked again, now that shut() waits: all of these are sequentially consistent.
        if (m_key.load() != key)
            return false;
        body();
        return true;
    }

private:
    class Stay
    {
    public:
        explicit Stay(std::atomic<int>* count)
            : m_count(count)
        {
            if (m_count)
                m_count->fetch_add(1);
        }
        ~Stay()
        {
            if (m_count)
                m_count->fetch_sub(1);
        }
        Stay(const Stay&) = delete;
        Stay& operator=(const Stay&) = delete;

    private:
        std::atomic<int>* m_count;
    };

    const std::thread::id m_owner = std::this_thread::get_id();
    std::atomic<const void*> m_key{nullptr};
    std::atomic<int> m_inside{0};
};
