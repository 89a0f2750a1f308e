// A named, typed value carried by a vertex or an edge. The type code is what writers switch on
// and what files name with a keyword; the five value classes derive from this base.
#pragma once

#include <memory>
#include <string>

#include "graph/ObjectExtension.h"

namespace vellum {

// The codes are part of the file formats and of the extension libraries' view of attributes.
enum class AttributeType : int { Boolean = 0, Integer = 1, Real = 2, String = 3, Vector = 4 };

// The keyword that files write before an attribute of the type ("boolean", "integer", ...).
const char* attributeKeyword(AttributeType type);

class Attribute {
  public:
    virtual ~Attribute();
    Attribute(const Attribute&) = delete;
    Attribute& operator=(const Attribute&) = delete;

    const std::string& name() const { return name_; }
    AttributeType type() const { return type_; }

    // True when `other` has the same type and the same value; names are not compared (the
    // vertex search by attribute has matched them already).
    virtual bool equals(const Attribute& other) const = 0;
    // A deep copy, extension included.
    virtual std::unique_ptr<Attribute> clone() const = 0;

    // Client data (for example an expression text of a rule); null for host graphs.
    ObjectExtension* extension() const { return extension_.get(); }
    void setExtension(std::unique_ptr<ObjectExtension> extension) {
        extension_ = std::move(extension);
    }

  protected:
    Attribute(std::string name, AttributeType type);
    // Gives a freshly made copy of this attribute a copy of its extension and returns it.
    std::unique_ptr<Attribute> withExtension(std::unique_ptr<Attribute> copy) const;

  private:
    std::string name_;
    AttributeType type_;
    std::unique_ptr<ObjectExtension> extension_;
};

}  // namespace vellum
