#pragma once

#include <cstdint>

template <class T>
class BaseListNode;

/// An intrusive doubly linked list of T, which derives from BaseListNode<T>.
template <class T>
class BaseList {
public:
    /// With ownsElements, destroying or clearing the list deletes the elements; otherwise it only unlinks them.
    explicit BaseList(bool ownsElements = false) : ownsElements(ownsElements) {}

    virtual ~BaseList() { clear(); }

    BaseList(const BaseList&) = delete;
    BaseList& operator=(const BaseList&) = delete;

    /// Kept up to date: no list is walked for it.
    std::uint32_t getCount() const { return count; }

    /// Null when the list is empty.
    T* getFirst() const { return static_cast<T*>(first); }

    /// Null when the list is empty.
    T* getLast() const { return static_cast<T*>(last); }

    /// Whether the list deletes its elements, as the constructor was told.
    bool isOwner() const { return ownsElements; }

    /// Links the element at the end, out of any other list that it is in. Does nothing if it is in this one, or null.
    void append(T* element)
    {
        if (element != nullptr) static_cast<BaseListNode<T>*>(element)->appendTo(this);
    }

    /// Takes all elements out, from the front; deletes them if the list owns them.
    void clear()
    {
        // Copies of nodes can have told this list and its elements different stories: neither the count nor what an
        // element does when it is deleted is relied on to come to an end.
        while (first != nullptr) {
            BaseListNode<T>* const element = first;
            BaseListNode<T>* const following = element->next;
            if (ownsElements)
                delete element; // unlinks itself
            else
                element->forgetLinks();
            if (first == element) first = following;
        }
        last = nullptr;
        count = 0;
    }

private:
    friend class BaseListNode<T>;

    std::uint32_t count = 0;
    // Not T*: an element links itself while it is constructed, and is no T yet.
    BaseListNode<T>* first = nullptr;
    BaseListNode<T>* last = nullptr;
    bool ownsElements;
};

/// What an element of a BaseList<T> derives from.
template <class T>
class BaseListNode {
public:
    /// Unlinks the node.
    virtual ~BaseListNode() { unlink(); }

    /// Null when the node is in no list.
    BaseList<T>* getList() const { return list; }

    /// Null for the first of a list and outside a list.
    T* getPrev() const { return static_cast<T*>(prev); }

    /// Null for the last of a list and outside a list.
    T* getNext() const { return static_cast<T*>(next); }

    /// Links the node at the end of a list, out of any other that it is in. Does nothing if it is in that one, or if
    /// the list is null.
    void appendTo(BaseList<T>* newList)
    {
        if (newList == nullptr || newList == list) return;
        unlink();
        list = newList;
        prev = list->last;
        (prev != nullptr ? prev->next : list->first) = this;
        list->last = this;
        ++list->count;
    }

    /// Takes the node out of its list, if it is in one.
    void unlink()
    {
        if (list == nullptr) return;
        (prev != nullptr ? prev->next : list->first) = next;
        (next != nullptr ? next->prev : list->last) = prev;
        --list->count;
        forgetLinks();
    }

protected:
    /// Appends the node to the list unless that is null.
    explicit BaseListNode(BaseList<T>* list = nullptr) { appendTo(list); }

    /// Kept on purpose: a copy carries the links of the node it was made from, but is not linked and not counted. To
    /// destroy a copy while that node is listed takes that node's place out of the list.
    BaseListNode(const BaseListNode&) = default;

    /// Takes over the links as a copy does, and leaves its own list's as they are: unlink it first.
    BaseListNode& operator=(const BaseListNode&) = default;

private:
    friend class BaseList<T>;

    void forgetLinks()
    {
        list = nullptr;
        prev = nullptr;
        next = nullptr;
    }

    BaseList<T>* list = nullptr;
    BaseListNode* prev = nullptr;
    BaseListNode* next = nullptr;
};
