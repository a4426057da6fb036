// tree.h - changes of a tree of body parts that its nodes have no operation for.
#ifndef SIPUTILITY_MULTIPART_TREE_H
#define SIPUTILITY_MULTIPART_TREE_H

#include "sipMultipartmessagebody.h"

// Deletes a tree with all its nodes.
void deleteTree(SipMultipartMessageBody* root);

// Takes the header that was stored last out of its node and deletes it.
void removeLatestHeader(SipMultipartMessageBody& node, SipHeader* header);

#endif  // SIPUTILITY_MULTIPART_TREE_H
