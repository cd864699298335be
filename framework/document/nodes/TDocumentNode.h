// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObserver.h"
#include "framework/document/observables/TSerializable.h"
#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TOwnerPtr.h"

#include <cstdint>
#include <functional>
#include <string_view>

class TDocumentByteBag;
class TDocumentListBase;
class TDocumentRoot;
class TObservableListBase;
class TStream;
class TXmlDocument;
struct _xmlDoc;

/// What becomes of a declared member. Loading goes on into members with kRead or kWrite, saving into those with
/// kWrite, undo into those with kUndoable. 0: part of the tree that neither persists nor records.
enum TPropertyFlags : uint32_t {
	kRead = 1,    // read, not written
	kWrite = 2,   // read and written
	kUndoable = 4 // changes are watched and recorded
};

/// A node of the tree that holds all persistent state. A class declares its members once, in its constructor, in the
/// order in which they stand in the file; form in the file, change propagation, paths and undo follow from that.
///
///     TThing::TThing() {
///         ReserveMembers(1, 1);
///         AddProperty(&mSize, TNameRules::MemberNameToElementName("mSize"), kWrite);
///         AddChild(mpPart.Get(), TNameRules::MemberNameToElementName("mpPart"), kWrite);
///         FinishDeclaration();
///     }
///
/// The class owns what it declares; a node only refers to it, and lets go of it when it dies without touching it.
/// Structure changes on the main thread only. Values may be set on other threads.
class TDocumentNode : public TObserver, public TWeakReferenceable {
public:
	template <class T>
	struct TProperty {
		T mpValue;
		TString mName;
		uint32_t mFlags;
		// The number of children declared before a value: keeps the order of declaration across the two kinds.
		int32_t mChildrenBefore = 0;
	};

	using TValueProperty = TProperty<TObservable*>;
	using TChildProperty = TProperty<TDocumentNode*>;
	struct TAttribute;

	~TDocumentNode() override;

	void AddProperty(TObservable* value, const TString& name, uint32_t flags);
	void AddProperty(TObservableListBase* value, const TString& name, uint32_t flags);
	/// index: among the children; -1 for the end. Throws TOutOfMemoryException; the node then stays as it was.
	void AddChild(TDocumentNode* node, const TString& name, uint32_t flags, int32_t index = -1);
	/// Ignored for what was never declared.
	void RemoveProperty(TObservable* value);
	void RemoveChild(TDocumentNode* node);
	/// An attribute of the node's own element.
	void AddAttribute(const TString& name, TSerializable* value);
	/// A comment in the node's element, behind what was declared before it.
	void AddComment(const TString& text);

	/// A comment stands among the values: without a value, the text as its name.
	const TList<TValueProperty>& Properties() const noexcept { return mObservables; }

	const TList<TChildProperty>& Children() const noexcept { return mChildren; }

	const TList<TAttribute>& Attributes() const noexcept;

	/// The node's form as a file of its own.
	TXmlDocument& XmlDocument();

	/// With the hooks around it, on the node and everything below it: what a file does not hold is as OnLoadBegin
	/// leaves it. Throws TReadableException; what was read so far then stays, after OnLoadEnd(false).
	void Load(const TString& path);
	void LoadFromStream(const TStream& stream);
	/// With the hooks around it. Without writeEmptyElements what holds nothing is left out. Throws TReadableException.
	void Save(const TString& path, bool writeEmptyElements);
	void SaveToStream(TStream& stream, bool writeEmptyElements);
	/// A new node with the same contents, by way of its XML form. Null, after an error message to the user, if that
	/// fails.
	TPtr<TDocumentNode> Clone();

	/// Calls one of the two for each declared member, in the order of declaration.
	void VisitMembers(
	    const std::function<void(const TValueProperty&)>& onValue,
	    const std::function<void(const TChildProperty&)>& onChild) const;

	TDocumentNode* Parent() const noexcept { return mpParent.Get(); }

	/// The nearest root above, or the node itself; null without one.
	virtual TDocumentRoot* Root() const;

	/// The node's own name as the root element of a file.
	const TString& ElementName() const noexcept { return mElementName; }

	/// The name under which the parent has declared this node; empty without one.
	TString NameInParent() const;
	/// TPropertyFlags; 0 for what is no child.
	uint32_t FlagsOfChild(const TDocumentNode* child) const noexcept;

	/// "/" + names on the way from the root, "[index]" for an element of a list; "/" for the root itself. Empty if the
	/// node is not below the root.
	TString BuildPath(const TDocumentNode* root) const;
	/// The same for a value of this node, also one within its observable lists.
	TString BuildValuePath(const TObservable* value, const TDocumentNode* root) const;
	/// The last part of that: the value's name, or the list's and "[index]" for each list on the way.
	TString RelativeValuePath(const TObservable* value) const;
	/// Null for an unknown step. "/" is the node itself.
	TDocumentNode* ChildAtPath(const TString& path) const;
	TObservable* ValueAtPath(const TString& path) const;
	/// Empty for what is not declared here.
	TString NameOfProperty(const TObservable* value) const;

	/// Marks this node and all above it as modified, with both marks.
	void Touch();
	/// Takes both marks off the whole subtree.
	void ClearModified();
	/// Takes the second mark off the whole subtree.
	void ClearSecondaryModified();

	bool IsModified() const noexcept { return mIsModified; }

	bool IsSecondaryModified() const noexcept { return mIsSecondaryModified; }

	bool IsLoading() const noexcept { return mIsLoading; }

	bool IsSaving() const noexcept { return mIsSaving; }

	bool IsUndoing() const noexcept { return mIsUndoing; }

	/// The value of the "type" attribute; empty while the element has none.
	const TString& StoredTypeName() const noexcept;

	/// The plain class name in the form of files, see TNameRules.
	virtual TString TypeName() const;
	/// A fresh object of the same class, from the registry; null if the class is not registered.
	virtual TPtr<TDocumentNode> NewInstance() const;
	virtual TString TypeNameOf(const TDocumentNode* object) const;

	virtual void OnCloned(const TDocumentNode* /*source*/) {}

	virtual void OnModified() {}

	virtual void OnModifiedCleared() {}

	virtual void OnSecondaryModifiedCleared() {}

	virtual void OnBeforeAttach() {}

	virtual void OnAfterAttach() {}

	virtual void OnBeforeDetach() {}

	virtual void OnAfterDetach() {}

	virtual void OnAttachedToRoot(TDocumentRoot* /*root*/) {}

	virtual void OnDetachedFromRoot(TDocumentRoot* /*root*/) {}

	virtual void OnUndoRedoBegin() {}

	virtual void OnUndoRedoEnd() {}

	/// False reads the parsed file as it stands, without upgrading it.
	virtual bool ShouldReadXml(_xmlDoc* /*document*/, const TString& /*path*/) { return true; }

	/// Sets the defaults that stand for what a file does not hold.
	virtual void OnLoadBegin() {}

	virtual void OnLoadEnd(bool /*success*/) {}

	/// After the whole tree has seen OnLoadEnd(true).
	virtual void OnAfterLoad() {}

	virtual bool IsSkippedOnSave() { return false; }

	virtual void OnPrepareSave() {}

	virtual void OnSaveBegin() {}

	virtual void OnSaveEnd(bool /*success*/) {}

	virtual bool IsRoot() const { return false; }

	virtual bool IsList() const { return false; }

	virtual bool IsByteBag() const { return false; }

protected:
	TDocumentNode();

	/// Room for what will be declared, so that declaring allocates once.
	void ReserveMembers(int32_t values, int32_t children);
	/// Last in each constructor: names the node after the class whose constructor it is.
	void FinishDeclaration();

	/// Begin and end always come in pairs on the same subtree, also on failure. What a load or a save does between them
	/// is the caller's.
	void BeginLoad();
	virtual void EndLoad(bool success);
	void BeginSave();
	void EndSave(bool success);
	void BeginUndoRedo();
	void EndUndoRedo();

	/// Gives the element a "type" attribute, or refreshes it.
	void StoreTypeName();
	void SwapChildren(int32_t index1, int32_t index2);
	/// The step that leads from this node to the child: "/" + name, or "[index]".
	virtual TString PathStepTo(const TDocumentNode* child) const;

	/// A value or list of the node, here or further down, will change or did. Passed up to the root.
	virtual void OnChangeBelow(TDocumentNode& node, TObservable& source, int32_t reason);

	/// What a path means by "[index]" on this node.
	virtual TDocumentNode* ElementAt(int32_t /*index*/) const { return nullptr; }

private:
	friend class TDocumentListBase;

	struct TExtras;
	struct TPathStep;

	template <class TWork>
	void LoadWith(const TWork& work);
	template <class TWork>
	void SaveWith(const TWork& work);
	void SetParent(TDocumentNode* parent);
	void InheritState(const TDocumentNode& parent, uint32_t flags);
	template <class TVisit>
	void VisitSubtree(uint32_t mask, const TVisit& visit);
	template <class TVisit>
	void VisitSubtreeBottomUp(uint32_t mask, const TVisit& visit);
	void CountChild(int32_t index, int32_t difference) noexcept;
	int32_t IndexOfChild(const TDocumentNode* node) const noexcept;
	TExtras& Extras();
	void ObserveValue(TObservable* value);
	void StopObservingValue(TObservable* value);
	void ObserveChild(TDocumentNode* node);
	void StopObservingChild(TDocumentNode* node);
	TDocumentNode* ChildAtStep(const TPathStep& step) const;
	TDocumentNode* ChildAt(std::u16string_view path) const;
	TObservable* ValueAt(std::u16string_view path) const;
	void OnChange(TObservable* source, int32_t reason);

	TList<TValueProperty> mObservables;
	TList<TChildProperty> mChildren;
	TWeakPtr<TDocumentNode> mpParent;
	TString mElementName;
	TOwnerPtr<TExtras> mpExtras; // what few nodes have
	bool mIsModified = false;
	bool mIsSecondaryModified = false;
	bool mIsLoading = false;
	bool mIsSaving = false;
	bool mIsUndoing = false;
};

struct TDocumentNode::TAttribute {
	TString mName;
	TWeakPtr<TSerializable> mpValue;
};
