// tree.h - changes of a tree of body parts for which its nodes have no operation.
#ifndef SIPUTILITY_MULTIPART_TREE_H
#define SIPUTILITY_MULTIPART_TREE_H

#include "sipMultipartmessagebody.h"

// Deletes a tree with all its nodes.
void deleteTree(SipMultipartMessageBody* root);

// Removes the header that was stored last from its node and deletes it.
void removeLatestHeader(SipMultipartMessageBody& node, SipHeader* header);

#endif  // SIPUTILITY_MULTIPART_TREE_H
